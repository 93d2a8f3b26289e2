#pragma once

#include "platform/CDC.h"

namespace pavane
{

/// A pen, brush or font that stays selected in a context for as long as this lives.
template <typename Object>
class SelectedObject
{
public:
    SelectedObject(CDC& dc, const Object& object)
        : object_(object), dc_(dc), old_(dc.SelectObject(&object_))
    {
    }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;
    ~SelectedObject() { dc_.SelectObject(old_); }

private:
    Object object_;
    CDC& dc_;
    Object* old_;
};

}  // namespace pavane
