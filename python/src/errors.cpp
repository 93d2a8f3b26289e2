#include "python/src/errors.h"

#include "python/src/bind.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <new>
#include <stdexcept>
#include <unistd.h>

namespace pavane::python
{

namespace
{

PyObject* formatError = nullptr;
PyObject* warningClass = nullptr;

PyObject* newClass(py::module_& m, const char* name, PyObject* base, const char* doc)
{
    const std::string whole = std::string("pavane.").append(name);
    PyObject* const made = PyErr_NewExceptionWithDoc(whole.c_str(), doc, base, nullptr);
    if (!made)
        throw py::error_already_set();
    m.add_object(name, py::reinterpret_borrow<py::object>(made));
    return made;
}

/// What the system says to opening it, 0 for nothing.
int faultOf(const CString& file, int flags)
{
    const int fd = open(file.c_str(), flags | O_CLOEXEC);
    if (fd < 0)
        return errno;
    char byte = 0;
    const int fault = (flags & O_ACCMODE) == O_RDONLY && read(fd, &byte, 1) < 0 ? errno : 0;
    (void)close(fd);
    return fault;
}

}  // namespace

void throwFormat(const CString& text)
{
    // a file's name need not be UTF-8
    PyErr_SetObject(formatError,
                    py::reinterpret_steal<py::object>(
                        PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()),
                                             "surrogateescape"))
                        .ptr());
    throw py::error_already_set();
}

void throwOs(const CString& file, const CString& why, int number)
{
    const CString text = number ? CString(std::strerror(number)) : why;
    const py::object error = py::reinterpret_borrow<py::object>(PyExc_OSError)(
        number ? number : EIO, text,
        py::reinterpret_steal<py::object>(PyUnicode_DecodeFSDefault(file.c_str())));
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
    throw py::error_already_set();
}

void throwUnread(const CString& file, const CString& why)
{
    if (const int fault = faultOf(file, O_RDONLY))
        throwOs(file, why, fault);
    throwFormat(file + ": " + why);
}

void throwUnwritten(const CString& file, const CString& why)
{
    const std::size_t slash = file.find_last_of('/');
    const CString folder = slash == CString::npos ? "." : slash == 0 ? "/" : file.substr(0, slash);
    int fault = faultOf(folder, O_RDONLY | O_DIRECTORY);
    if (!fault || fault == EISDIR)
        fault = access(folder.c_str(), W_OK) ? errno : 0;
    throwOs(file, why, fault);
}

void warn(const CString& text)
{
    if (PyErr_WarnEx(warningClass, text.c_str(), 1) < 0)
        throw py::error_already_set();
}

void bindErrors(py::module_& m)
{
    py::register_local_exception_translator([](std::exception_ptr fault) {
        try {
            if (fault)
                std::rethrow_exception(fault);
        } catch (const std::bad_alloc&) {
            PyErr_SetString(PyExc_MemoryError, "there is not enough memory");
        } catch (const std::length_error&) {
            PyErr_SetString(PyExc_MemoryError, "there is not enough memory");
        }
    });
    formatError = newClass(m, "FormatError", PyExc_ValueError,
                           "What a file or a header holds cannot be used; the text says why.");
    warningClass = newClass(m, "PavaneWarning", PyExc_UserWarning,
                            "A note: something was left out, or is not as it may seem.");
}

}  // namespace pavane::python
