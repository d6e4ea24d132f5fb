#pragma once

#include "topology/FileRecords.h"
#include "traffic/FlowInfo.h"
#include "traffic/VLineInfo.h"

#include <algorithm>
#include <tuple>
#include <type_traits>

// What a project file holds of each record, in the order of the file. Writing, reading and the
// smallest size follow from these lists.

/// Whether a type is a record that stands below.
template <typename Record>
inline constexpr bool hasFields = false;

template <typename Record>
inline constexpr auto fieldsOf = std::tuple<>();

template <>
inline constexpr bool hasFields<FileArrowInfo> = true;
template <>
inline constexpr auto
    fieldsOf<FileArrowInfo> = std::make_tuple(&FileArrowInfo::lineName, &FileArrowInfo::srcNode,
                                              &FileArrowInfo::dstNode, &FileArrowInfo::srcPort,
                                              &FileArrowInfo::dstPort, &FileArrowInfo::bandWidth);

template <>
inline constexpr bool hasFields<FileNodeInfo> = true;
template <>
inline constexpr auto fieldsOf<FileNodeInfo> = std::make_tuple(
    &FileNodeInfo::type, &FileNodeInfo::position, &FileNodeInfo::nodeName, &FileNodeInfo::nodeId,
    &FileNodeInfo::nodeMac, &FileNodeInfo::portNum, &FileNodeInfo::mtu, &FileNodeInfo::bufferNum);

template <>
inline constexpr bool hasFields<FileVLineInfo> = true;
template <>
inline constexpr auto fieldsOf<FileVLineInfo> = std::make_tuple(&FileVLineInfo::vLineId,
                                                                &FileVLineInfo::vLinePaths);

template <>
inline constexpr bool hasFields<DstNodeInfo> = true;
template <>
inline constexpr auto fieldsOf<DstNodeInfo> = std::make_tuple(&DstNodeInfo::dstNodeName,
                                                              &DstNodeInfo::rcvWindowLow,
                                                              &DstNodeInfo::rcvWindowHigh);

template <>
inline constexpr bool hasFields<FlowInfo> = true;
template <>
inline constexpr auto fieldsOf<FlowInfo> =
    std::make_tuple(&FlowInfo::flowType, &FlowInfo::flowId, &FlowInfo::flowPeriod,
                    &FlowInfo::flowSize, &FlowInfo::vLineId, &FlowInfo::srcNode,
                    &FlowInfo::sendWindowLow, &FlowInfo::sendWindowHigh, &FlowInfo::dstNodes);

/// Whether a type is a list of records or texts, be it by inheritance as QStringList is.
template <typename Item>
std::true_type isListOf(const QList<Item>*);
std::false_type isListOf(const void*);
template <typename List>
inline constexpr bool isList = decltype(isListOf(static_cast<const List*>(nullptr)))::value;

/// The type behind a pointer to a member.
template <typename Pointer>
struct MemberType;
template <typename Record, typename Field>
struct MemberType<Field Record::*> {
    using Type = Field;
};
template <typename Pointer>
using FieldType = typename MemberType<Pointer>::Type;

/// Whether all fields of two records are equal, those of records in them too.
template <typename Field>
bool areEqual(const Field& a, const Field& b)
{
    if constexpr (hasFields<Field>) {
        return std::apply([&](auto... field) { return (areEqual(a.*field, b.*field) && ...); },
                          fieldsOf<Field>);
    } else if constexpr (isList<Field>) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                          [](const auto& x, const auto& y) { return areEqual(x, y); });
    } else {
        return a == b;
    }
}
