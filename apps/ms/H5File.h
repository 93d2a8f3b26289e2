#pragma once

#include <hdf5.h>
#include <string>
#include <vector>

namespace pavane_ms
{

/// A thing of HDF5 that is closed in the end.
class H5Handle
{
public:
    using Close = herr_t (*)(hid_t);
    /// Throws a Failure with `what` when there is none.
    H5Handle(hid_t id, Close close, const std::string& what);
    ~H5Handle() { close_(id_); }
    H5Handle(const H5Handle&) = delete;
    H5Handle& operator=(const H5Handle&) = delete;
    operator hid_t() const { return id_; }  // NOLINT: as the library's functions take it

private:
    hid_t id_;
    Close close_;
};

/// Texts of one length, filled with zeros, as the readers of H5Parm want them.
void writeTexts(hid_t group, const std::string& name, const std::vector<std::string>& texts);
void writeNumbers(hid_t group, const std::string& name, const std::vector<hsize_t>& shape,
                  const std::vector<double>& values);
void writeText(hid_t object, const std::string& name, const std::string& text);

int hasThing(hid_t group, const std::string& name);
std::vector<std::string> namesOf(hid_t group);
/// All are checked against what a file of gains can hold; empty when there is none of the name.
std::vector<double> readNumbersOf(hid_t group, const std::string& name);
std::vector<hsize_t> shapeOf(hid_t group, const std::string& name);
std::vector<std::string> readTexts(hid_t group, const std::string& name);
/// An attribute's text; empty without.
std::string readText(hid_t object, const std::string& name);

}  // namespace pavane_ms
