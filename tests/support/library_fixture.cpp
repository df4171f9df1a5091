#include "support/library_fixture.h"

namespace gpbtest
{

void LibraryFixture::SetUp()
{
    PlatformFixture::SetUp();
    workDirectory().makeDirectory(kProtoDirectory);
    ASSERT_NO_FATAL_FAILURE(recreateContext());
}

void LibraryFixture::TearDown()
{
    destroyContext();
    PlatformFixture::TearDown();
}

void LibraryFixture::recreateContext(std::initializer_list<uint32_t> closedLevels)
{
    destroyContext();
    const GpbLibInitParam param = m_log.initParam(kModuleId, closedLevels);
    m_context = GPBLIB_Initial(&param);
    ASSERT_NE(nullptr, m_context);
    m_log.clear();
}

void LibraryFixture::destroyContext()
{
    GPBLIB_Uninitial(m_context);
    m_context = nullptr;
}

std::string LibraryFixture::writeProto(const std::string &module, const std::string &text,
                                       const std::string &directory) const
{
    const std::string separator = directory.empty() || directory.back() == '/' ? "" : "/";
    return workDirectory().writeFile(directory + separator + module + ".proto", text);
}

} // namespace gpbtest
