#include "pattern_text.h"

#include <bitset>
#include <cctype>

namespace gpbtest
{

namespace
{

constexpr std::size_t kFew = 4;       /**< repetitions where the pattern has no upper bound */
constexpr int kDeepest = 50;          /**< groups in each other */
constexpr std::size_t kLongest = 400; /**< characters of a text */

using Characters = std::bitset<128>;

Characters range(char first, char last)
{
    Characters set;
    for (int c = first; c <= last; ++c)
    {
        set.set(static_cast<std::size_t>(c));
    }
    return set;
}

Characters printable()
{
    return range(' ', '~');
}

class Sampler
{
public:
    Sampler(const std::string &pattern, Random &random) : m_pattern(pattern), m_random(random) {}

    std::string sample() { return alternatives(0); }

private:
    bool atEnd() const { return m_at >= m_pattern.size(); }
    bool sees(char c) const { return !atEnd() && m_pattern[m_at] == c; }

    /** Reads all alternatives up to the end of the group, and takes one of them. */
    std::string alternatives(int depth)
    {
        std::vector<std::string> texts = {sequence(depth)};
        while (sees('|'))
        {
            ++m_at;
            texts.push_back(sequence(depth));
        }
        return m_random.of(texts);
    }

    std::string sequence(int depth)
    {
        std::string text;
        while (!atEnd() && !sees('|') && !sees(')'))
        {
            const std::size_t begin = m_at;
            std::string once = atom(depth);
            const std::size_t end = m_at;
            const std::size_t count = repetitions();
            const std::size_t behind = m_at;
            for (std::size_t i = 0; i < count && text.size() < kLongest; ++i)
            {
                // Each repetition is another text.
                m_at = begin;
                text += i == 0 ? once : atom(depth);
                m_at = end;
            }
            m_at = behind;
        }
        return text;
    }

    std::string atom(int depth)
    {
        const char c = m_pattern[m_at];
        if (c == '(' && depth < kDeepest)
        {
            ++m_at;
            std::string text = alternatives(depth + 1);
            m_at += sees(')') ? 1 : 0;
            return text;
        }
        if (c == '[')
        {
            ++m_at;
            return one(characterClass());
        }
        ++m_at;
        if (c == '\\')
        {
            return one(escape());
        }
        return c == '.' ? one(range('a', 'z')) : std::string(1, c);
    }

    std::string one(const Characters &set)
    {
        std::vector<char> members;
        for (std::size_t c = 0; c < set.size(); ++c)
        {
            if (set.test(c))
            {
                members.push_back(static_cast<char>(c));
            }
        }
        return members.empty() ? "" : std::string(1, m_random.of(members));
    }

    /** Behind a backslash. */
    Characters escape()
    {
        const char c = atEnd() ? ' ' : m_pattern[m_at++];
        switch (c)
        {
        case 'd':
            return range('0', '9');
        case 'D':
            return range('a', 'z');
        case 's':
            return range(' ', ' ');
        case 'S':
        case 'w':
        case 'c':
            return range('a', 'z') | range('0', '9');
        case 'i':
            return range('a', 'z');
        case 'W':
            return range(' ', '/');
        case 'n':
            return range('\n', '\n');
        case 't':
            return range('\t', '\t');
        case 'p':
        case 'P':
            return property();
        default:
            return range(c, c);
        }
    }

    /** "{L}" behind "\p": letters, digits, or something printable. */
    Characters property()
    {
        const std::size_t end = m_pattern.find('}', m_at);
        const std::string name = m_pattern.substr(m_at, end - m_at);
        m_at = end == std::string::npos ? m_pattern.size() : end + 1;
        const bool digits = name.find('N') != std::string::npos;
        return digits ? range('0', '9') : name.find('L') != std::string::npos ? range('a', 'z') : printable();
    }

    /** Behind a "[". */
    Characters characterClass()
    {
        const bool negated = sees('^');
        m_at += negated ? 1 : 0;
        Characters set;
        while (!atEnd() && !sees(']'))
        {
            const char c = m_pattern[m_at++];
            if (c == '\\')
            {
                set |= escape();
            }
            else if (sees('-') && m_at + 1 < m_pattern.size() && m_pattern[m_at + 1] != ']' &&
                     m_pattern[m_at + 1] != '[')
            {
                set |= range(c, m_pattern[m_at + 1]);
                m_at += 2;
            }
            else if (static_cast<unsigned char>(c) < set.size())
            {
                set.set(static_cast<std::size_t>(c));
            }
        }
        m_at += atEnd() ? 0 : 1;
        return negated ? printable() & ~set : set;
    }

    /** How often what was read last stands: its quantifier. */
    std::size_t repetitions()
    {
        if (sees('?'))
        {
            ++m_at;
            return m_random.sizeBelow(2);
        }
        if (sees('*') || sees('+'))
        {
            const std::size_t least = m_pattern[m_at++] == '+' ? 1 : 0;
            return least + m_random.sizeBelow(kFew);
        }
        if (!sees('{'))
        {
            return 1;
        }
        ++m_at;
        const std::size_t least = number();
        std::size_t most = least;
        if (sees(','))
        {
            ++m_at;
            most = sees('}') ? least + kFew : number();
        }
        m_at += sees('}') ? 1 : 0;
        return least + m_random.sizeBelow(most > least ? most - least + 1 : 1);
    }

    std::size_t number()
    {
        std::size_t value = 0;
        while (!atEnd() && std::isdigit(static_cast<unsigned char>(m_pattern[m_at])) != 0)
        {
            value = std::min<std::size_t>(value * 10 + static_cast<std::size_t>(m_pattern[m_at++] - '0'), kLongest);
        }
        return value;
    }

    const std::string &m_pattern;
    Random &m_random;
    std::size_t m_at = 0;
};

} // namespace

std::string patternText(const std::string &pattern, Random &random)
{
    return Sampler(pattern, random).sample();
}

} // namespace gpbtest
