#pragma once

#include "apps/view/several/map_link.h"

namespace pavane
{

/// What goes from one map of a window to the others.
enum LinkPart : int { linkZoom = 1, linkPointer = 2, linkColours = 4, linkAreas = 8 };

/// How the maps of a window are linked: by what, and which parts. A plain value.
class MapLinks
{
public:
    LinkBy by() const { return by_; }
    void setBy(LinkBy by) { by_ = by; }
    /// By sky, by cell, not at all, and round.
    void next();
    int has(LinkPart part) const { return by_ != LinkBy::nothing && (parts_ & part); }
    /// Whether the part is chosen, linked or not.
    int wants(LinkPart part) const { return (parts_ & part) != 0; }
    void toggle(LinkPart part) { parts_ ^= part; }
    /// "Linked by sky: zoom, pointer"; `byCell`: so many pairs link by cell as one has no
    /// positions.
    std::string text(int byCell) const;

private:
    LinkBy by_ = LinkBy::sky;
    int parts_ = linkZoom | linkPointer;
};

/// Of all maps one leads at a time: what the others then change is an answer, and leads nothing.
/// So links in a circle end where they began.
class LinkLead
{
public:
    /// While it lives it leads, unless another one does.
    explicit LinkLead(int& isLed) : isLed_(isLed), leads_(!isLed) { isLed_ = 1; }
    LinkLead(const LinkLead&) = delete;
    LinkLead& operator=(const LinkLead&) = delete;
    ~LinkLead()
    {
        if (leads_)
            isLed_ = 0;
    }
    int leads() const { return leads_; }

private:
    int& isLed_;
    int leads_;
};

}  // namespace pavane
