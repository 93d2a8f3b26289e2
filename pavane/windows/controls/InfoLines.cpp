#include "pavane/windows/controls/InfoLines.h"

#include "pavane/windows/controls/control_texts.h"

#include <algorithm>

namespace pavane
{

namespace
{

const CString noLine;

/// The last place of `piece` that begins before `before`; -1 for none.
int findLast(const CString& text, const CString& piece, int before)
{
    int last = -1;
    for (int at = findText(text, piece, 0); at >= 0 && at < before;
         at = findText(text, piece, at + 1))
        last = at;
    return last;
}

}  // namespace

void InfoLines::append(const CString& text)
{
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        lines_.push_back(text.substr(from, end - from));
        from = end + 1;
    }
    dropOldest();
}

void InfoLines::dropOldest()
{
    const int gone = count() - most_;
    if (gone <= 0)
        return;
    lines_.erase(lines_.begin(), lines_.begin() + gone);
    for (TextPlace* const place : {&caret_, &anchor_})
        *place = place->line < gone ? TextPlace() : TextPlace{place->line - gone, place->at};
}

void InfoLines::clear()
{
    lines_.clear();
    caret_ = anchor_ = {};
}

const CString& InfoLines::line(int index) const
{
    return index >= 0 && index < count() ? lines_[static_cast<std::size_t>(index)] : noLine;
}

CString InfoLines::text() const
{
    CString all;
    for (const CString& line : lines_)
        all += line + '\n';
    return all;
}

void InfoLines::setMost(int lines)
{
    most_ = std::max(1, lines);
    dropOldest();
}

TextPlace InfoLines::within(TextPlace place) const
{
    if (lines_.empty() || place.line < 0)
        return {};
    if (place.line >= count())
        return {count() - 1, static_cast<int>(lines_.back().size())};
    const CString& text = line(place.line);
    const int at = std::clamp(place.at, 0, static_cast<int>(text.size()));
    // never inside a character
    return {place.line, at == 0 ? 0 : nextCharacter(text, previousCharacter(text, at))};
}

void InfoLines::setCaret(TextPlace place, int keeps)
{
    caret_ = within(place);
    if (!keeps)
        anchor_ = caret_;
}

void InfoLines::selectAll()
{
    anchor_ = {};
    caret_ = within({count(), 0});
}

int InfoLines::selectedPart(int index, int& from, int& to) const
{
    const TextPlace first = std::min(caret_, anchor_);
    const TextPlace last = std::max(caret_, anchor_);
    if (first == last || index < first.line || index > last.line)
        return 0;
    from = index == first.line ? first.at : 0;
    to = index == last.line ? last.at : static_cast<int>(line(index).size()) + 1;
    return from < to;
}

CString InfoLines::selectedText() const
{
    CString text;
    const int last = std::max(caret_, anchor_).line;
    for (int i = std::min(caret_, anchor_).line; i <= last; ++i) {
        int from = 0, to = 0;
        if (!selectedPart(i, from, to))
            continue;
        const CString& whole = line(i);
        text += whole.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
        if (static_cast<std::size_t>(to) > whole.size())
            text += '\n';
    }
    return text;
}

TextPlace InfoLines::byCharacters(TextPlace from, int steps) const
{
    TextPlace at = within(from);
    for (; steps > 0; --steps) {
        if (at.at < static_cast<int>(line(at.line).size()))
            at.at = nextCharacter(line(at.line), at.at);
        else if (at.line + 1 < count())
            at = {at.line + 1, 0};
    }
    for (; steps < 0; ++steps) {
        if (at.at > 0)
            at.at = previousCharacter(line(at.line), at.at);
        else if (at.line > 0)
            at = {at.line - 1, static_cast<int>(line(at.line - 1).size())};
    }
    return at;
}

TextPlace InfoLines::byLines(TextPlace from, int steps) const
{
    const int last = std::max(0, count() - 1);
    return within({std::clamp(from.line + steps, 0, last), from.at});
}

int InfoLines::find(const CString& piece, int step)
{
    if (piece.empty() || lines_.empty())
        return 0;
    const TextPlace first = std::min(caret_, anchor_);
    for (int i = 0; i <= count(); ++i) {
        const int index = ((first.line + (step < 0 ? -i : i)) % count() + count()) % count();
        const CString& text = line(index);
        const int end = static_cast<int>(text.size()) + 1;
        const bool isBegin = i == 0;
        const int from = !isBegin ? 0 : first.at + (step > 0 && hasSelection() ? 1 : 0);
        const int at = step < 0 ? findLast(text, piece, isBegin ? first.at : end)
                                : findText(text, piece, from);
        if (at < 0)
            continue;
        anchor_ = {index, at};
        caret_ = {index, at + static_cast<int>(piece.size())};
        return 1;
    }
    return 0;
}

}  // namespace pavane
