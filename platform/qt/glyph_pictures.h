#pragma once

#include "platform/core/DeviceBackend.h"

#include <array>
#include <atomic>
#include <deque>
#include <memory>
#include <QFont>
#include <shared_mutex>
#include <unordered_map>
#include <vector>

namespace pavane
{

/// The pictures of one font's characters at one ratio, made when they are first asked for, by the
/// painter itself, so that a text from pictures has the pixels of a text that is painted. Any
/// thread may ask; a picture stays where it is once it is made.
class GlyphPictures
{
public:
    /// `ascent` and `height` of the cell, in units.
    GlyphPictures(const QFont& font, int ascent, int height, int ratio);
    /// Null for a character whose look depends on its neighbours, or that has colours of its own.
    const GlyphPicture* of(char32_t character, double advance);

private:
    struct Stored {
        GlyphPicture picture;
        std::vector<std::uint32_t> cover;
        bool isUsable = false;
    };
    const Stored& make(char32_t character, double advance);

    std::shared_mutex lock_;  ///< of all below but the pictures of `ascii_`
    QFont font_;
    int ascent_;
    int height_;
    int ratio_;
    std::deque<Stored> stored_;  // whose elements stay where they are
    std::array<std::atomic<const Stored*>, 128> ascii_ = {};
    std::unordered_map<char32_t, const Stored*> others_;
};

/// Whether a character is drawn alone as it is in a text: letters of simple scripts, signs.
bool standsAlone(char32_t character);

}  // namespace pavane
