#pragma once

#include "pavane/windows/controls/AStaticText.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/controls.h"
#include "platform/slider.h"

namespace pavane
{

/// Who shows the planes that the bar asks for.
class PlaneBarOwner
{
public:
    virtual ~PlaneBarOwner() = default;
    /// The user wants that plane, within the range; 0 when it cannot be shown.
    virtual int planeWanted(int plane) = 0;
    /// Enter or Escape in the field: the keyboard goes back to the map.
    virtual void planeBarLeft() = 0;
};

/// The bar below the map of a cube: a button that plays the planes, a slider, the number of the
/// plane to type, and what the plane is (frequency, velocity, Stokes).
class PlaneBar : public CWnd
{
public:
    explicit PlaneBar(PlaneBarOwner& owner) : owner_(owner), field_(*this) {}
    int Create(CWnd* parent, unsigned id);
    static int height() { return 28; }

    /// `count` planes, of which `plane` is shown; `text` says what it is.
    void SetPlane(int plane, int count, const CString& text);
    int GetPlane() const { return slider_.GetPos(); }
    /// Gives the keyboard to the number.
    void FocusNumber();
    /// Shows the planes one after another, from the last on to the first.
    void Play(int on);
    int IsPlaying() const { return playing_; }
    /// Says of the controls what keys do in them.
    void ExplainBy(AToolTip& tips);
    /// The Tab key goes round the controls of the bar, as in a dialog; F6 leaves it. Non-zero when
    /// the message was that.
    int TakeTab(const MSG& message);

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnPaint() override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnTimer(unsigned id) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    class Field : public CEdit
    {
    public:
        explicit Field(PlaneBar& bar) : bar_(bar) {}

    protected:
        void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;

    private:
        PlaneBar& bar_;
    };
    int ask(int plane);
    void fieldEntered();
    void fillField();

    PlaneBarOwner& owner_;
    CButton play_;
    CSliderCtrl slider_;
    Field field_;
    AStaticText of_, text_;
    int count_ = 1;
    int playing_ = 0;
    int filling_ = 0;  ///< the bar writes the number itself
};

}  // namespace pavane
