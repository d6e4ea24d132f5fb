#pragma once

/// What a CellTable tells a widget that stands in one of its cells.
class CellInView
{
public:
    virtual ~CellInView() = default;

    /// Whether the widget may be shown; at first it may not.
    void setInView(bool inView) { m_inView = inView; }

protected:
    bool m_inView = false;
};

/// A widget that stays hidden, whoever shows it, until its cell is in view.
///
/// Being shown is what makes a widget expensive: style sheet, native resources, layout, and a place
/// among those that may lie over each other.
template <typename Widget>
class CellWidget : public Widget, public CellInView
{
public:
    using Widget::Widget;

    void setVisible(bool visible) override
    {
        if (m_inView || !visible)
            Widget::setVisible(visible);
    }
};
