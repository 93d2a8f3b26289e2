#pragma once

#include "tessel/AFile.h"

#include <bit>
#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

namespace pavane
{

// How one item goes into a file and comes back; every function returns non-zero for success. A type
// that has neither Store and Load members nor an overload here gets one in its own namespace.

static_assert(std::endian::native == std::endian::little, "stored fields are little-endian");

template <typename T>
requires std::is_arithmetic_v<T>
int storeItem(AFile& file, const T& item) { return file.write(&item, sizeof item); }

template <typename T>
requires std::is_arithmetic_v<T>
int loadItem(AFile& file, T& item) { return file.read(&item, sizeof item); }

template <typename T>
requires requires(const T& item, AFile& file) { item.Store(file); }
int storeItem(AFile& file, const T& item) { return item.Store(file); }

template <typename T>
requires requires(T& item, AFile& file) { item.Load(file); }
int loadItem(AFile& file, T& item) { return item.Load(file); }

/// A text: its length in bytes (int32), then the bytes. Longer texts than that counts fail.
inline int storeItem(AFile& file, const std::string& text)
{
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        return 0;
    const auto length = static_cast<std::int32_t>(text.size());
    return storeItem(file, length) && file.write(text.data(), length);
}

/// The same back. A length below 0, or above what the file still holds, fails and `text` is kept.
inline int loadItem(AFile& file, std::string& text)
{
    std::int32_t length = 0;
    if (!loadItem(file, length) || length < 0 || length > file.left())
        return 0;
    std::string read(static_cast<std::size_t>(length), '\0');
    if (!file.read(read.data(), length))
        return 0;
    text.swap(read);
    return 1;
}

}  // namespace pavane
