#pragma once

// Steps through a text that ends with a null character.
namespace verification
{

inline void skipBlanks(const char*& place)
{
    while (*place == ' ' || *place == '\n' || *place == '\r' || *place == '\t')
        ++place;
}

/// Goes behind the text; false, and nowhere, when something else stands there.
inline bool skipHere(const char*& place, const char* text)
{
    const char* at = place;
    for (; *text != '\0'; ++text, ++at) {
        if (*at != *text)
            return false;
    }
    place = at;
    return true;
}

/// Goes behind blanks and the text; false, and no further than the blanks, when something else
/// stands there.
inline bool skipText(const char*& place, const char* text)
{
    skipBlanks(place);
    return skipHere(place, text);
}

} // namespace verification
