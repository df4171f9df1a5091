#include "json_text.h"

#include <cstdint>

#include "gpb_templatelib/gpb_limits.h"

namespace gpbtool
{

namespace
{

/** A level of a document is a container, or a list and its entry: two at most in each other, and one around all. */
constexpr int kMaxNesting = 1 + 2 * static_cast<int>(GPB_COMPILER_MAX_LAYERS);

/** The parser reads no further into a number. */
constexpr std::size_t kMaxNumber = 63;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kEnd = '\0';

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20;
}

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

int HexDigit(char c)
{
    if (IsDigit(c))
    {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f')
    {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/** Bytes of a well-formed UTF-8 sequence that a byte above 0x7F begins, and the least character of that length. */
struct Utf8Lead
{
    std::size_t length;
    std::uint32_t bits;
    std::uint32_t least;
};

Utf8Lead LeadOf(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xE0U) == 0xC0U)
    {
        return {2, byte & 0x1FU, 0x80};
    }
    if ((byte & 0xF0U) == 0xE0U)
    {
        return {3, byte & 0x0FU, 0x800};
    }
    return (byte & 0xF8U) == 0xF0U ? Utf8Lead{4, byte & 0x07U, 0x10000} : Utf8Lead{0, 0, 0};
}

bool IsHighSurrogate(std::uint32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(std::uint32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

class Checker
{
public:
    explicit Checker(std::string_view text) : text_(text) {}

    std::vector<std::size_t> Run()
    {
        if (text_.substr(0, kByteOrderMark.size()) == kByteOrderMark)
        {
            position_ = kByteOrderMark.size();
        }
        SkipBlanks();
        offsets_.push_back(position_);
        Value();
        SkipBlanks();
        if (position_ < text_.size())
        {
            Fail("text after the end of the document");
        }
        return std::move(offsets_);
    }

private:
    [[noreturn]] void Fail(const std::string &what) const { throw JsonTextError(what, position_); }

    /** The character at the position; a NUL in the text is an error wherever it stands, as is the text's end. */
    char Peek(std::size_t ahead = 0) const
    {
        return position_ + ahead < text_.size() ? text_[position_ + ahead] : kEnd;
    }

    bool Skip(char expected)
    {
        if (Peek() != expected)
        {
            return false;
        }
        ++position_;
        return true;
    }

    void SkipBlanks()
    {
        while (Peek() == ' ' || Peek() == '\t' || Peek() == '\n' || Peek() == '\r')
        {
            ++position_;
        }
    }

    void Value()
    {
        if (Peek() == '{' || Peek() == '[')
        {
            if (nesting_ == kMaxNesting)
            {
                Fail("nested deeper than " + std::to_string(kMaxNesting) + " levels");
            }
            ++nesting_;
            Peek() == '{' ? Object() : Array();
            --nesting_;
        }
        else if (Peek() == '"')
        {
            Text();
        }
        else if (Peek() == '-' || IsDigit(Peek()))
        {
            Number();
        }
        else if (!Word("true") && !Word("false") && !Word("null"))
        {
            Fail(position_ == text_.size() ? "the document ends early" : "a value is expected here");
        }
    }

    bool Word(std::string_view word)
    {
        if (text_.substr(position_, word.size()) != word)
        {
            return false;
        }
        position_ += word.size();
        return true;
    }

    void Object()
    {
        ++position_;
        SkipBlanks();
        if (Skip('}'))
        {
            return;
        }
        do
        {
            SkipBlanks();
            if (Peek() != '"')
            {
                Fail("a name in double quotes is expected here");
            }
            offsets_.push_back(position_);
            Text();
            SkipBlanks();
            if (!Skip(':'))
            {
                Fail("\":\" is expected here");
            }
            SkipBlanks();
            Value();
            SkipBlanks();
        } while (Skip(','));
        if (!Skip('}'))
        {
            Fail(R"("," or "}" is expected here)");
        }
    }

    void Array()
    {
        ++position_;
        SkipBlanks();
        if (Skip(']'))
        {
            return;
        }
        do
        {
            SkipBlanks();
            offsets_.push_back(position_);
            Value();
            SkipBlanks();
        } while (Skip(','));
        if (!Skip(']'))
        {
            Fail(R"("," or "]" is expected here)");
        }
    }

    void Digits()
    {
        if (!IsDigit(Peek()))
        {
            Fail("a digit is expected here");
        }
        while (IsDigit(Peek()))
        {
            ++position_;
        }
    }

    void Number()
    {
        const std::size_t begin = position_;
        Skip('-');
        if (!Skip('0'))
        {
            Digits();
        }
        else if (IsDigit(Peek()))
        {
            Fail("a number does not begin with 0");
        }
        if (Skip('.'))
        {
            Digits();
        }
        if (Skip('e') || Skip('E'))
        {
            if (!Skip('+'))
            {
                Skip('-');
            }
            Digits();
        }
        if (position_ - begin > kMaxNumber)
        {
            position_ = begin;
            Fail("a number of more than " + std::to_string(kMaxNumber) + " characters");
        }
    }

    void Text()
    {
        ++position_;
        while (!Skip('"'))
        {
            if (position_ == text_.size())
            {
                Fail("the document ends within a text");
            }
            if (IsControl(Peek()))
            {
                Fail(R"(a control character in a text; write it as \n, \t or \u00XX)");
            }
            if (Peek() == '\\')
            {
                Escape();
            }
            else if (static_cast<unsigned char>(Peek()) < 0x80)
            {
                ++position_;
            }
            else
            {
                Utf8();
            }
        }
    }

    void Escape()
    {
        constexpr std::string_view kPlain = "\"\\/bfnrt";
        if (kPlain.find(Peek(1)) != std::string_view::npos)
        {
            position_ += 2;
            return;
        }
        if (Peek(1) != 'u')
        {
            Fail("no escape sequence of JSON");
        }
        const std::uint32_t unit = Unit(0);
        if (unit == 0)
        {
            Fail("\\u0000 would end the text");
        }
        if (IsLowSurrogate(unit))
        {
            Fail("the second half of a surrogate pair without the first");
        }
        if (!IsHighSurrogate(unit))
        {
            position_ += kUnitLength;
            return;
        }
        if (Peek(kUnitLength) != '\\' || Peek(kUnitLength + 1) != 'u' || !IsLowSurrogate(Unit(kUnitLength)))
        {
            Fail("the first half of a surrogate pair without the second");
        }
        position_ += 2 * kUnitLength;
    }

    /** The number of \uXXXX, `ahead` of the position. */
    std::uint32_t Unit(std::size_t ahead) const
    {
        std::uint32_t unit = 0;
        for (std::size_t i = 2; i < kUnitLength; ++i)
        {
            const int digit = HexDigit(Peek(ahead + i));
            if (digit < 0)
            {
                Fail("\\u is followed by four hexadecimal digits");
            }
            unit = unit * 16 + static_cast<std::uint32_t>(digit);
        }
        return unit;
    }

    void Utf8()
    {
        constexpr std::uint32_t kLastCharacter = 0x10FFFF;
        const Utf8Lead lead = LeadOf(Peek());
        std::uint32_t character = lead.bits;
        bool good = lead.length != 0;
        for (std::size_t i = 1; good && i < lead.length; ++i)
        {
            good = IsContinuation(Peek(i));
            character = character << 6U | (static_cast<unsigned char>(Peek(i)) & 0x3FU);
        }
        const bool surrogate = IsHighSurrogate(character) || IsLowSurrogate(character);
        if (!good || character < lead.least || character > kLastCharacter || surrogate)
        {
            Fail("no UTF-8");
        }
        position_ += lead.length;
    }

    static constexpr std::size_t kUnitLength = 6;

    std::string_view text_;
    std::size_t position_ = 0;
    int nesting_ = 0;
    std::vector<std::size_t> offsets_;
};

} // namespace

TextPlace PlaceFinder::At(std::size_t offset)
{
    if (offset < offset_)
    {
        offset_ = 0;
        place_ = TextPlace();
    }
    for (; offset_ < offset && offset_ < text_.size(); ++offset_)
    {
        if (text_[offset_] == '\n')
        {
            ++place_.line;
            place_.column = 1;
        }
        else if (!IsContinuation(text_[offset_]))
        {
            ++place_.column;
        }
    }
    return place_;
}

std::vector<std::size_t> CheckJsonText(std::string_view text)
{
    return Checker(text).Run();
}

} // namespace gpbtool
