#include "planner/search/WindowSort.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace planner
{

namespace
{

/// Segments up to this length are left to the final insertion sort.
constexpr std::ptrdiff_t shortSegment = 16;

using Iterator = SlotWindow*;
using Index = std::ptrdiff_t;

bool before(const SlotWindow& a, const SlotWindow& b)
{
    return a.start < b.start;
}

// --- Heap sort, which finishes a long segment once quicksort has gone too deep.

struct Heap {
    Iterator first;
    Index length;
};

void raise(Iterator heap, Index hole, Index top, SlotWindow value)
{
    Index parent = (hole - 1) / 2;
    while (hole > top && before(heap[parent], value)) {
        heap[hole] = heap[parent];
        hole = parent;
        parent = (hole - 1) / 2;
    }
    heap[hole] = value;
}

// Moves the hole down to a leaf along the larger children, then the value up from there.
void sink(const Heap& heap, Index hole, SlotWindow value)
{
    const Iterator first = heap.first;
    const Index length = heap.length;
    const Index top = hole;
    Index child = hole;
    while (child < (length - 1) / 2) {
        child = 2 * (child + 1);
        if (before(first[child], first[child - 1]))
            --child;
        first[hole] = first[child];
        hole = child;
    }
    if (length % 2 == 0 && child == (length - 2) / 2) {
        child = 2 * (child + 1);
        first[hole] = first[child - 1];
        hole = child - 1;
    }
    raise(first, hole, top, value);
}

void heapSort(Iterator first, Iterator last)
{
    const Index length = last - first;
    for (Index parent = (length - 2) / 2; parent >= 0; --parent)
        sink({first, length}, parent, first[parent]);
    for (Index end = length - 1; end > 0; --end) {
        const SlotWindow value = first[end];
        first[end] = first[0];
        sink({first, end}, 0, value);
    }
}

// --- Quicksort with a median of three as pivot.

void moveMedianTo(Iterator result, Iterator a, Iterator b, Iterator c)
{
    if (before(*a, *b)) {
        if (before(*b, *c))
            std::swap(*result, *b);
        else
            std::swap(*result, before(*a, *c) ? *c : *a);
    } else if (before(*a, *c)) {
        std::swap(*result, *a);
    } else {
        std::swap(*result, before(*b, *c) ? *c : *b);
    }
}

// The pivot stands before first and bounds both searches.
Iterator partition(Iterator first, Iterator last, const SlotWindow& pivot)
{
    while (true) {
        while (before(*first, pivot))
            ++first;
        --last;
        while (before(pivot, *last))
            --last;
        if (first >= last)
            return first;
        std::swap(*first, *last);
        ++first;
    }
}

void quickSort(Iterator first, Iterator last, int depthLeft)
{
    while (last - first > shortSegment) {
        if (depthLeft == 0) {
            heapSort(first, last);
            return;
        }
        --depthLeft;
        moveMedianTo(first, first + 1, first + (last - first) / 2, last - 1);
        const Iterator cut = partition(first + 1, last, *first);
        quickSort(cut, last, depthLeft);
        last = cut;
    }
}

// --- Insertion sort, which finishes the whole vector.

void insertUnguarded(Iterator position)
{
    const SlotWindow value = *position;
    for (; before(value, *(position - 1)); --position)
        *position = *(position - 1);
    *position = value;
}

void insertGuarded(Iterator first, Iterator position)
{
    if (before(*position, *first))
        std::rotate(first, position, position + 1);
    else
        insertUnguarded(position);
}

int floorLog2(Index value)
{
    int result = 0;
    while (value > 1) {
        value /= 2;
        ++result;
    }
    return result;
}

} // namespace

void sortWindowsByStart(std::vector<SlotWindow>& windows)
{
    if (windows.size() < 2)
        return;
    const Iterator first = windows.data();
    const Iterator last = first + windows.size();
    quickSort(first, last, 2 * floorLog2(last - first));

    const Iterator guardedEnd = last - first > shortSegment ? first + shortSegment : last;
    for (Iterator position = first + 1; position != guardedEnd; ++position)
        insertGuarded(first, position);
    for (Iterator position = guardedEnd; position != last; ++position)
        insertUnguarded(position);
}

} // namespace planner
