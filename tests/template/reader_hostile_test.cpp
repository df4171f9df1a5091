// The reader over bytes that nobody wrote: it gives a tree or null, reads nothing behind the buffer, leaks nothing, and
// what it accepts can be written again.
#include <cstdio>
#include <random>

#include "support/library_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

const char *const kBuffers[] = {
    "06 0C FE FF 1F 08 10 00 1A 02 61 62 20 00",
    "06 00",
    "06 1B 08 AC 02 11 01 02 03 04 05 06 07 08 1A 03 61 62 63 25 01 02 03 04 2E 02 08 01 36 00",
    "06 15 0E 0F 0E 09 0E 03 0A 01 61 0E 02 08 01 0E 02 08 01 0A 02 61 62",
    "86 80 80 80 10 07 F8 FF FF FF 7F 05 00",
};

class HostileReaderTest : public LibraryFixture
{
protected:
    void SetUp() override
    {
        LibraryFixture::SetUp();
        // Half of the bytes are read with diagnostics, which must survive them as well.
        m_contexts[1] = context();
    }

    void expectSafe(const Bytes &bytes)
    {
        const GpbLibContext *listener = m_contexts[m_reads++ % 2];
        const ReadResult result = read(bytes, kModuleId, listener);
        EXPECT_LE(result.consumed, bytes.size());
        if (result.tree == nullptr)
        {
            return;
        }
        ++m_accepted;
        // What was accepted is a tree like any other: its own bytes give the same tree again.
        const Bytes written = write(result.tree.get(), GPB_OBJTREE_MODE_TEMPLATE, listener);
        ASSERT_EQ(GPBLIB_ObjTree_GetWriteLen(result.tree.get()), written.size());
        const ReadResult again = read(written, kModuleId);
        ASSERT_NE(nullptr, again.tree);
        EXPECT_EQ(describe(result.tree.get()), describe(again.tree.get()));
        EXPECT_EQ(toHex(written), toHex(write(again.tree.get(), GPB_OBJTREE_MODE_TEMPLATE)));
        log().clear();
    }

    /** The buffers above, and all that a generated template has: containers with their attributes, texts and numbers.
     */
    static std::vector<Bytes> buffers()
    {
        std::vector<Bytes> all;
        for (const char *hex : kBuffers)
        {
            all.push_back(fromHex(hex));
        }
        const TreePtr tree(GPBLIB_RDMI_CreateRoot(1, "top"));
        ObjNode *parent = nullptr;
        for (uint32_t i = 1; i <= 4; ++i)
        {
            const RdmiNodeAttr node = {0x10 * i, "box", 3, 0};
            const RdmiFieldAttr field = {static_cast<uint16_t>(i), 300, "a-leaf", 6, 9, 4};
            parent = GPBLIB_RDMI_CreateNode(tree.get(), parent, i, &node);
            GPBLIB_RDMI_AddFieldAttribute(tree.get(), parent, &field);
            GPBLIB_RDMI_CreateString(tree.get(), parent, 300, 4, "10.1");
            GPBLIB_RDMI_CreateInteger(tree.get(), parent, 5, 0x500000010ULL);
        }
        all.push_back(write(tree.get(), GPB_OBJTREE_MODE_TEMPLATE));
        return all;
    }

    const GpbLibContext *m_contexts[2] = {nullptr, nullptr};
    size_t m_reads = 0;
    size_t m_accepted = 0;
};

TEST_F(HostileReaderTest, EveryPrefix)
{
    for (const Bytes &bytes : buffers())
    {
        for (size_t length = 0; length <= bytes.size(); ++length)
        {
            expectSafe(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)));
        }
    }
    EXPECT_GT(m_accepted, 0u);
    std::printf("prefixes of template buffers: %zu cases\n", m_reads);
}

TEST_F(HostileReaderTest, EveryRoom)
{
    size_t cases = 0;
    for (const Bytes &bytes : buffers())
    {
        const ReadResult tree = read(bytes, kModuleId);
        if (tree.tree == nullptr)
        {
            continue;
        }
        const uint32_t size = GPBLIB_ObjTree_GetWriteLen(tree.tree.get());
        for (const uint32_t mode : {GPB_OBJTREE_MODE_TEMPLATE, GPB_OBJTREE_MODE_PLAIN})
        {
            const Bytes whole = write(tree.tree.get(), mode);
            for (uint32_t room = 0; room <= size + 1; ++room)
            {
                Bytes buffer(room); // its end is the memory's end
                const uint32_t count = GPBLIB_ObjTree_Write(tree.tree.get(), buffer.data(), room, mode, nullptr);
                EXPECT_EQ(room < size ? 0 : whole.size(), count) << toHex(bytes) << " in a room of " << room;
                buffer.resize(count);
                EXPECT_EQ(toHex(room < size ? Bytes() : whole), toHex(buffer));
                ++cases;
            }
        }
    }
    EXPECT_GT(cases, 100u);
    std::printf("rooms of template buffers: %zu cases\n", cases);
}

TEST_F(HostileReaderTest, EverySingleByteMutation)
{
    for (const char *hex : kBuffers)
    {
        const Bytes bytes = fromHex(hex);
        for (size_t position = 0; position < bytes.size(); ++position)
        {
            for (unsigned int value = 0; value < 256; ++value)
            {
                Bytes mutated = bytes;
                mutated[position] = static_cast<uint8_t>(value);
                expectSafe(mutated);
            }
        }
    }
    EXPECT_GT(m_accepted, 0u);
    std::printf("bytes of template buffers: %zu cases\n", m_reads);
}

TEST_F(HostileReaderTest, RandomBytes)
{
    std::mt19937 random(20240229);
    for (int i = 0; i < 4000; ++i)
    {
        Bytes bytes(random() % 200);
        for (uint8_t &byte : bytes)
        {
            byte = static_cast<uint8_t>(random());
        }
        if (bytes.size() > 2 && i % 2 == 0)
        {
            bytes[0] = 0x06; // past the first check
            bytes[1] &= 0x7F;
        }
        expectSafe(bytes);
    }
}

TEST_F(HostileReaderTest, RandomFields)
{
    // Well-formed tags of small fields get further into the reader than random bytes do.
    std::mt19937 random(19991231);
    constexpr uint8_t kWireTypes[] = {0, 1, 2, 5, 6, 6, 6};
    for (int i = 0; i < 4000; ++i)
    {
        Bytes bytes = {0x06, static_cast<uint8_t>(random() % 128)};
        while (bytes.size() < 120)
        {
            const uint8_t wireType = kWireTypes[random() % sizeof(kWireTypes)];
            bytes.push_back(static_cast<uint8_t>((random() % 16) << 3 | wireType));
            bytes.push_back(static_cast<uint8_t>(random() % 24));
        }
        expectSafe(bytes);
    }
    EXPECT_GT(m_accepted, 100u);
}

} // namespace
} // namespace gpbtest
