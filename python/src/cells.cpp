#include "python/src/cells.h"

#include <bit>
#include <climits>
#include <cmath>
#include <string>

namespace pavane::python
{

namespace py = pybind11;

namespace
{

struct Item {
    CellType type = CellType::float32;
    int swapped = 0;
};

/// What a format of the buffer protocol says of one number; 0 for anything but a real number.
int readFormat(const std::string& format, py::ssize_t bytes, Item& item)
{
    std::size_t at = 0;
    if (!format.empty() && std::string_view("<>!=@").find(format[0]) != std::string_view::npos) {
        const bool isLittle = format[0] == '<', isBig = format[0] == '>' || format[0] == '!';
        const bool hostIsLittle = std::endian::native == std::endian::little;
        item.swapped = bytes > 1 && ((isLittle && !hostIsLittle) || (isBig && hostIsLittle));
        at = 1;
    }
    if (format.size() != at + 1)
        return 0;
    const char code = format[at];
    if (code == 'f' || code == 'd') {
        item.type = bytes == 4 ? CellType::float32 : CellType::float64;
        return bytes == 4 || bytes == 8;
    }
    const bool isSigned = std::string_view("bhilqn").find(code) != std::string_view::npos;
    const bool isUnsigned = std::string_view("BHILQN").find(code) != std::string_view::npos;
    if (!isSigned && !isUnsigned)
        return 0;
    switch (bytes) {
    case 1:
        item.type = isSigned ? CellType::int8 : CellType::uint8;
        return 1;
    case 2:
        item.type = isSigned ? CellType::int16 : CellType::uint16;
        return 1;
    case 4:
        item.type = isSigned ? CellType::int32 : CellType::uint32;
        return 1;
    case 8:
        item.type = isSigned ? CellType::int64 : CellType::uint64;
        return 1;
    default:
        return 0;
    }
}

std::unique_ptr<py::buffer_info> bufferOf(const py::object& object, const char* what)
{
    if (!PyObject_CheckBuffer(object.ptr()))
        throw py::type_error(std::string(what)
                                 .append(" has to be an array, not ")
                                 .append(Py_TYPE(object.ptr())->tp_name));
    auto view = std::make_unique<Py_buffer>();
    if (PyObject_GetBuffer(object.ptr(), view.get(), PyBUF_STRIDES | PyBUF_FORMAT) != 0) {
        PyErr_Clear();
        throw py::type_error(std::string(what).append(
            " has to be an array of real numbers: its cells cannot be read in place"));
    }
    return std::make_unique<py::buffer_info>(view.release());
}

int lengthOf(py::ssize_t length)
{
    if (length < 1)
        throw py::value_error("the array has no cells");
    if (length > INT_MAX)
        throw py::value_error("the array has more than 2147483647 rows or columns");
    return static_cast<int>(length);
}

}  // namespace

CellsOf::CellsOf(py::object array, py::object mask, double blank)
    : array_(std::move(array)), mask_(std::move(mask)), cells_(bufferOf(array_, "a map")),
      blank_(blank)
{
    Item item;
    if (!readFormat(cells_->format, cells_->itemsize, item))
        throw py::type_error("a map has cells of float, double or whole numbers, not of type " +
                             (py::hasattr(array_, "dtype")
                                  ? py::str(array_.attr("dtype")).cast<std::string>()
                                  : cells_->format));
    if (cells_->ndim != 2)
        throw py::value_error("a map has two axes, rows and columns, not " +
                              std::to_string(cells_->ndim));
    CellMemory memory;
    memory.first = cells_->ptr;
    memory.rows = lengthOf(cells_->shape[0]);
    memory.columns = lengthOf(cells_->shape[1]);
    memory.rowBytes = cells_->strides[0];
    memory.columnBytes = cells_->strides[1];
    memory.type = item.type;
    memory.swapped = item.swapped;
    memory.blank = blank;
    if (!mask_.is_none()) {
        bytes_ = bufferOf(mask_, "a mask");
        if (bytes_->itemsize != 1 || bytes_->ndim != 2 || bytes_->shape != cells_->shape)
            throw py::value_error("the mask has to be a bool array of the map's shape");
        memory.maskFirst = static_cast<const unsigned char*>(bytes_->ptr);
        memory.maskRowBytes = bytes_->strides[0];
        memory.maskColumnBytes = bytes_->strides[1];
    }
    CString error;
    if (!makeCellAccess(memory, access_, error))
        throw py::value_error("the map " + error);
}

void CellsOf::checkPlace() const
{
    const auto same = [](const py::object& object, const std::unique_ptr<py::buffer_info>& was) {
        if (!was)
            return true;
        const auto now = bufferOf(object, "a map");
        return now->ptr == was->ptr && now->shape == was->shape && now->strides == was->strides &&
               now->format == was->format;
    };
    if (!same(array_, cells_) || !same(mask_, bytes_))
        throw py::value_error(
            "the array was resized or moved since the figure was made: make a new figure");
}

}  // namespace pavane::python
