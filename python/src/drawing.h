#pragma once

#include "platform/geometry.h"
#include "platform/picture.h"
#include "python/src/run.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <pybind11/numpy.h>
#include <vector>

namespace pavane
{
class ABAxis;
}

namespace pavane::python
{

/// One thread at a time draws a figure. A child that was forked while another thread drew it would
/// wait for a thread that it does not have: it throws instead.
class DrawingLock
{
public:
    class Hold
    {
    public:
        /// Throws when `stop` comes up before the lock is free.
        Hold(DrawingLock& lock, const StopFlag& stop) : lock_(lock) { lock_.take(stop); }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        ~Hold() { lock_.drop(); }

    private:
        DrawingLock& lock_;
    };

private:
    void take(const StopFlag& stop);
    void drop();

    std::timed_mutex mutex_;
    std::atomic<int> process_{0};  ///< that holds it
};

/// What a Python figure draws, at a size in pixels of 96 per inch. Drawing lets go of the
/// interpreter's lock.
class Drawing
{
public:
    Drawing(int width, int height);
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    virtual ~Drawing();

    int width() const { return width_; }
    int height() const { return height_; }

    /// The picture at `ratio` pixels of the device for each; that of ratio 1 is kept.
    std::shared_ptr<const CPicture> picture(int ratio)
    {
        return picture(ratio, PictureGround::white);
    }
    /// The file's bytes: "png", "pdf" or "svg".
    pybind11::bytes bytes(const std::string& format, int ratio, bool isTransparent, bool isFast);
    /// Writes it whole or not at all.
    void save(const CString& file, const std::string& format, int ratio, bool isTransparent);
    /// What is to be said of what was drawn last.
    virtual std::vector<CString> notes() { return {}; }
    /// Whether an SVG of it is small enough for a notebook.
    virtual int isSmall() const { return 1; }

    /// Values of the axes to pixels of the picture at ratio 1, in place, and back.
    void toPixels(double* x, double* y, std::size_t count);
    void toValues(double* x, double* y, std::size_t count);

protected:
    /// Before anything is drawn, with the interpreter's lock: throws when it cannot be.
    virtual void check() const {}
    /// Into the whole of any context.
    virtual void draw(CDC& dc, const CRect& rect) = 0;
    /// Lays out without drawing.
    virtual void layOut(CDC& dc, const CRect& rect) = 0;
    virtual ABAxis& axis() = 0;
    virtual CString title() const = 0;
    /// With the lock, without that of the interpreter: what was kept is out of date.
    void forget() { kept_.reset(); }

    DrawingLock lock_;

private:
    std::shared_ptr<const CPicture> drawn(int ratio, PictureGround ground, const StopFlag& stop,
                                          CString& error);
    std::shared_ptr<const CPicture> picture(int ratio, PictureGround ground);
    /// Draws a page and ends it by close(page).
    template <typename Close>
    void makePage(const std::string& format, PictureGround ground, const Close& close);

    int width_, height_;
    std::shared_ptr<const CPicture> kept_;
};

}  // namespace pavane::python
