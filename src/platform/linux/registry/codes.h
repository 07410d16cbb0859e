#pragma once

#include <cstdint>

/// The platform's result codes that the store gives.
namespace orvane::store {

using Code = std::uint32_t;

inline constexpr Code kSuccess = 0;
inline constexpr Code kNotFound = 2;
inline constexpr Code kTooManyOpenFiles = 4;
inline constexpr Code kAccessDenied = 5;
inline constexpr Code kNoMemory = 8;
inline constexpr Code kDiskFull = 112;
inline constexpr Code kBusy = 170;
inline constexpr Code kNoMoreItems = 259;
inline constexpr Code kBadDatabase = 1009;
inline constexpr Code kCantOpen = 1011;
inline constexpr Code kCantRead = 1012;
inline constexpr Code kCantWrite = 1013;
inline constexpr Code kKeyDeleted = 1018;
inline constexpr Code kHasChildren = 1020;
inline constexpr Code kNoTransaction = 6704;
inline constexpr Code kTransactionLost = 6701;
inline constexpr Code kTransactionExists = 6717;

}  // namespace orvane::store
