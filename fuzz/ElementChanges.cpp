#include "fuzz/ElementChanges.h"

#include "tests/support/RandomSource.h"

#include <algorithm>
#include <string>

namespace
{

/// From the begin of an opening tag to behind the closing one.
struct Element {
    std::size_t begin = std::string::npos;
    std::size_t textBegin = 0;
    std::size_t textEnd = 0;
    std::size_t end = 0;

    bool isFound() const { return begin != std::string::npos; }
    std::size_t size() const { return end - begin; }
};

/// The next element behind a place that has a closing tag, or none.
Element elementBehind(const std::string& document, std::size_t place)
{
    Element element;
    const std::size_t open = document.find('<', place);
    const std::size_t close = document.find('>', open);
    if (open == std::string::npos || close == std::string::npos)
        return element;
    const std::size_t nameEnd = std::min(document.find_first_of(" >", open), close);
    const std::string closing = "</" + document.substr(open + 1, nameEnd - open - 1) + ">";
    element.textBegin = close + 1;
    element.textEnd = document.find(closing, element.textBegin);
    if (element.textEnd == std::string::npos)
        return element;
    element.begin = open;
    element.end = element.textEnd + closing.size();
    return element;
}

std::size_t anyPlace(const std::string& document, RandomSource& random)
{
    return static_cast<std::size_t>(random.below(static_cast<int>(document.size()) + 1));
}

const char* oddText(RandomSource& random)
{
    return random.pick({"",           "0",          "1",           "-1",
                        "200",        "400",        "1000",        "65535",
                        "65536",      "2147483647", "2147483648",  "-2147483648",
                        "4294967295", "4294967296", "99999999999", "0x10",
                        " 7 ",        "[0,0]",      "[0,1000]",    "[1,",
                        "[2,1]",      "[-1,1]",     "\"TT\"",      "\"A,S,B\"",
                        "a",          "&lt;",       "[,]",         "[2147483647,2147483647]"});
}

/// A number near the one that stands there, or of another size.
std::string numberNear(const std::string& text, RandomSource& random)
{
    const std::size_t begin = text.find_first_of("0123456789");
    if (begin == std::string::npos)
        return oddText(random);
    const std::size_t end = std::min(text.find_first_not_of("0123456789", begin), text.size());
    const std::size_t digits = std::min<std::size_t>(end - begin, 12);
    const long long number = std::stoll(text.substr(begin, digits));
    const long long changed = random.chance(70)   ? number + random.between(-3, 3)
                              : random.chance(50) ? number * 2
                                                  : number / 2;
    return text.substr(0, begin) + std::to_string(changed) + text.substr(end);
}

void changeOneElement(std::string& document, RandomSource& random)
{
    const Element element = elementBehind(document, anyPlace(document, random));
    if (!element.isFound())
        return;
    const std::string whole = document.substr(element.begin, element.size());
    const std::string text =
        document.substr(element.textBegin, element.textEnd - element.textBegin);
    switch (random.below(6)) {
    case 0:
        document.erase(element.begin, element.size());
        break;
    case 1:
        document.insert(element.end, whole);
        break;
    case 2: { // in the place of another one, or ahead of it
        const Element other = elementBehind(document, anyPlace(document, random));
        if (other.isFound())
            document.replace(other.begin, random.chance(50) ? other.size() : 0, whole);
        break;
    }
    case 3:
        document.replace(element.textBegin, text.size(), oddText(random));
        break;
    default:
        if (text.find('<') == std::string::npos)
            document.replace(element.textBegin, text.size(), numberNear(text, random));
        break;
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed)
{
    RandomSource random(seed);
    if (random.chance(25))
        return LLVMFuzzerMutate(data, size, maxSize);
    const std::string before(reinterpret_cast<const char*>(data), size);
    std::string document = before;
    for (int changes = random.between(1, 3); changes > 0; --changes)
        changeOneElement(document, random);
    if (document == before) // no element was met, as in what is no document
        return LLVMFuzzerMutate(data, size, maxSize);
    const std::size_t changedSize = std::min(document.size(), maxSize);
    std::copy_n(document.begin(), changedSize, data);
    return changedSize;
}
