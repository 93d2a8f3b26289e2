#pragma once

#include "platform/core/DeviceBackend.h"

namespace pavane
{

/// Pages on their way to a file, one after the other. What is not finished is forgotten.
class PageDocument
{
public:
    virtual ~PageDocument() = default;
    /// Begins a page of `sheet`, hundredths of a millimetre, and `size` units. Non-zero on success.
    virtual int startPage(CSize sheet, CSize size) = 0;
    /// What the open page is drawn on; the same for all pages.
    virtual VectorDevice& device() = 0;
    virtual int endPage() = 0;
    /// Writes what follows the last page; nothing may come after it.
    virtual int finish() = 0;
    /// Why one of them failed: a clause without its subject.
    virtual CString fault() const = 0;
};

}  // namespace pavane
