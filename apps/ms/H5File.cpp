#include "apps/ms/H5File.h"

#include "apps/ms/Failure.h"

#include <algorithm>
#include <cstring>

namespace pavane_ms
{

namespace
{

/// More gains are in no file.
constexpr hsize_t mostValues = hsize_t{1} << 27;
constexpr std::size_t longestText = 4096;

H5Handle textType(std::size_t length)
{
    const hid_t type = H5Tcopy(H5T_C_S1);
    H5Tset_size(type, std::max<std::size_t>(length, 1));
    H5Tset_strpad(type, H5T_STR_NULLPAD);
    return {type, H5Tclose, "a text cannot be described"};
}

hsize_t sizeOfSpace(hid_t space, std::vector<hsize_t>& shape)
{
    const int rank = H5Sget_simple_extent_ndims(space);
    if (rank < 0 || rank > H5S_MAX_RANK)
        throw Failure("has an array of no shape");
    shape.resize(static_cast<std::size_t>(rank));
    if (rank > 0)
        H5Sget_simple_extent_dims(space, shape.data(), nullptr);
    hsize_t size = 1;
    for (const hsize_t each : shape) {
        if (each > mostValues || size * each > mostValues)
            throw Failure("has an array of a size that cannot be true");
        size *= each;
    }
    return size;
}

/// Texts of a type, fixed or not, in a place that holds `count` of them.
template <typename Read>
std::vector<std::string> takeTexts(hid_t type, std::size_t count, const Read& read)
{
    std::vector<std::string> texts;
    if (H5Tget_class(type) != H5T_STRING)
        throw Failure("has numbers where texts belong");
    if (H5Tis_variable_str(type) > 0) {
        std::vector<char*> items(count, nullptr);
        const H5Handle own(H5Tcopy(type), H5Tclose, "a text cannot be described");
        if (count > 0 && read(own, items.data()) < 0)
            throw Failure("has texts that cannot be read");
        for (char* item : items) {
            texts.emplace_back(item ? item : "");
            H5free_memory(item);
        }
        return texts;
    }
    const std::size_t length = H5Tget_size(type);
    if (length == 0 || length > longestText || count > mostValues / length)
        throw Failure("has texts of a length that cannot be true");
    std::vector<char> bytes(count * length);
    if (count > 0 && read(type, bytes.data()) < 0)
        throw Failure("has texts that cannot be read");
    for (std::size_t i = 0; i < count; ++i) {
        const char* const at = bytes.data() + i * length;
        texts.emplace_back(at, ::strnlen(at, length));
    }
    return texts;
}

}  // namespace

H5Handle::H5Handle(hid_t id, Close close, const std::string& what) : id_(id), close_(close)
{
    if (id < 0)
        throw Failure(what);
}

void writeTexts(hid_t group, const std::string& name, const std::vector<std::string>& texts)
{
    std::size_t length = 1;
    for (const std::string& text : texts)
        length = std::max(length, text.size() + 1);  // some readers look for the zero
    std::vector<char> bytes(length * texts.size(), '\0');
    for (std::size_t i = 0; i < texts.size(); ++i)
        std::copy(texts[i].begin(), texts[i].end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(i * length));
    const hsize_t count = texts.size();
    const std::string what = name + " cannot be written";
    const H5Handle type = textType(length);
    const H5Handle space(H5Screate_simple(1, &count, nullptr), H5Sclose, what);
    const H5Handle set(
        H5Dcreate2(group, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT),
        H5Dclose, what);
    if (H5Dwrite(set, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, bytes.data()) < 0)
        throw Failure(what);
}

void writeNumbers(hid_t group, const std::string& name, const std::vector<hsize_t>& shape,
                  const std::vector<double>& values)
{
    const std::string what = name + " cannot be written";
    const H5Handle space(H5Screate_simple(static_cast<int>(shape.size()), shape.data(), nullptr),
                         H5Sclose, what);
    const H5Handle set(H5Dcreate2(group, name.c_str(), H5T_IEEE_F64LE, space, H5P_DEFAULT,
                                  H5P_DEFAULT, H5P_DEFAULT),
                       H5Dclose, what);
    if (H5Dwrite(set, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()) < 0)
        throw Failure(what);
}

void writeText(hid_t object, const std::string& name, const std::string& text)
{
    const std::string what = name + " cannot be written";
    const H5Handle type = textType(text.size());
    const H5Handle space(H5Screate(H5S_SCALAR), H5Sclose, what);
    const H5Handle attribute(
        H5Acreate2(object, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose, what);
    std::string bytes = text;
    bytes.resize(std::max<std::size_t>(text.size(), 1));
    if (H5Awrite(attribute, type, bytes.data()) < 0)
        throw Failure(what);
}

int hasThing(hid_t group, const std::string& name)
{
    return H5Lexists(group, name.c_str(), H5P_DEFAULT) > 0 &&
           H5Oexists_by_name(group, name.c_str(), H5P_DEFAULT) > 0;
}

std::vector<std::string> namesOf(hid_t group)
{
    std::vector<std::string> names;
    const auto take = [](hid_t, const char* name, const H5L_info_t*, void* to) -> herr_t {
        static_cast<std::vector<std::string>*>(to)->emplace_back(name);
        return 0;
    };
    H5Literate(group, H5_INDEX_NAME, H5_ITER_INC, nullptr, take, &names);
    return names;
}

std::vector<hsize_t> shapeOf(hid_t group, const std::string& name)
{
    if (!hasThing(group, name))
        return {};
    const std::string what = "has no array " + name;
    const H5Handle set(H5Dopen2(group, name.c_str(), H5P_DEFAULT), H5Dclose, what);
    const H5Handle space(H5Dget_space(set), H5Sclose, what);
    std::vector<hsize_t> shape;
    sizeOfSpace(space, shape);
    return shape;
}

std::vector<double> readNumbersOf(hid_t group, const std::string& name)
{
    if (!hasThing(group, name))
        return {};
    const std::string what = "has an array " + name + " that cannot be read";
    const H5Handle set(H5Dopen2(group, name.c_str(), H5P_DEFAULT), H5Dclose, what);
    const H5Handle space(H5Dget_space(set), H5Sclose, what);
    std::vector<hsize_t> shape;
    std::vector<double> values(static_cast<std::size_t>(sizeOfSpace(space, shape)));
    if (!values.empty() &&
        H5Dread(set, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()) < 0)
        throw Failure(what);
    return values;
}

std::vector<std::string> readTexts(hid_t group, const std::string& name)
{
    if (!hasThing(group, name))
        return {};
    const std::string what = "has an array " + name + " that cannot be read";
    const H5Handle set(H5Dopen2(group, name.c_str(), H5P_DEFAULT), H5Dclose, what);
    const H5Handle space(H5Dget_space(set), H5Sclose, what);
    const H5Handle type(H5Dget_type(set), H5Tclose, what);
    std::vector<hsize_t> shape;
    const auto count = static_cast<std::size_t>(sizeOfSpace(space, shape));
    return takeTexts(type, count, [&](hid_t as, void* to) {
        return H5Dread(set, as, H5S_ALL, H5S_ALL, H5P_DEFAULT, to);
    });
}

std::string readText(hid_t object, const std::string& name)
{
    if (H5Aexists(object, name.c_str()) <= 0)
        return {};
    const std::string what = "has an attribute " + name + " that cannot be read";
    const H5Handle attribute(H5Aopen(object, name.c_str(), H5P_DEFAULT), H5Aclose, what);
    const H5Handle type(H5Aget_type(attribute), H5Tclose, what);
    const H5Handle space(H5Aget_space(attribute), H5Sclose, what);
    std::vector<hsize_t> shape;
    if (sizeOfSpace(space, shape) != 1)
        return {};
    return takeTexts(type, 1, [&](hid_t as, void* to) { return H5Aread(attribute, as, to); })[0];
}

}  // namespace pavane_ms
