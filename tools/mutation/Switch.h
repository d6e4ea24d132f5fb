#pragma once

// Included by force into every source of a copy that tools/mutate made: one program in which each
// statement, condition and constant has a switch of its own, chosen by the environment.

#include <atomic>
#include <cstddef>
#include <cstdlib>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

class QString;

namespace mutation
{

constexpr int unread = -2;
inline int chosen = unread;
inline unsigned char* reached = nullptr;

/// Takes the switch from ROTUNDA_MUTANT; ROTUNDA_REACHED names a file with a byte a switch, in
/// which those are marked that the program came by.
inline void readEnvironment()
{
    const char* number = std::getenv("ROTUNDA_MUTANT");
    chosen = number ? std::atoi(number) : -1;
    const char* path = std::getenv("ROTUNDA_REACHED");
    if (!path)
        return;
    const int file = open(path, O_RDWR);
    const off_t size = lseek(file, 0, SEEK_END);
    void* bytes =
        mmap(nullptr, static_cast<std::size_t>(size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (bytes != MAP_FAILED)
        reached = static_cast<unsigned char*>(bytes);
}

inline bool isChosen(int number)
{
    if (__builtin_expect(chosen == unread, 0))
        readEnvironment();
    if (__builtin_expect(reached != nullptr, 0))
        reached[number] = 1;
    return chosen == number;
}

/// What the compiler works out itself stays as it was.
constexpr bool is(int number)
{
    if (__builtin_is_constant_evaluated())
        return false;
    return isChosen(number);
}

constexpr bool changed(int number, bool value)
{
    return is(number) ? !value : value;
}

template <typename Number>
constexpr Number changed(int number, Number value)
{
    return is(number) ? static_cast<Number>(value + 1) : value;
}

template <std::size_t size>
constexpr const char* changed(int number, const char (&text)[size])
{
    return is(number) ? (size == 1 ? "*" : "") : text;
}

template <typename Text>
Text changedText(int number, Text text)
{
    return is(number) ? Text() : text;
}

} // namespace mutation
