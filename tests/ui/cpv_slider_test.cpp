// The slider: value and knob place in both orientations, the events of a
// mouse press, drag and release in their order, and refused values.
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

#include "ui/cpv_slider.h"

using sonorit::ui::cpvSlider;

namespace {

// Every event of the slider as text, in the order raised.
struct EventLog {
    explicit EventLog(cpvSlider& s)
    {
        QObject::connect(&s, &cpvSlider::Click, [this] { events << "Click"; });
        QObject::connect(&s, &cpvSlider::ArrivedFirst, [this] { events << "ArrivedFirst"; });
        QObject::connect(&s, &cpvSlider::ArrivedLast, [this] { events << "ArrivedLast"; });
        QObject::connect(&s, &cpvSlider::ValueChanged, [this, &s] { events << "Value " + QString::number(s.Value()); });
        QObject::connect(&s, &cpvSlider::MouseDown, [this](int b) { events << "MouseDown " + QString::number(b); });
        QObject::connect(&s, &cpvSlider::MouseUp, [this](int b) { events << "MouseUp " + QString::number(b); });
    }
    QStringList take() { return std::exchange(events, {}); }
    QStringList events;
};

// A slider 0..100 whose rail is 200 pixels long: the 11-pixel knob travels 189.
std::unique_ptr<cpvSlider> makeSlider(int orientation)
{
    auto s = std::make_unique<cpvSlider>();
    s->setOrientation(orientation);
    EXPECT_TRUE(s->setMax(100));
    s->resize(orientation == cpvSlider::Horizontal ? QSize(208, 25) : QSize(25, 208));
    s->show();
    return s;
}

TEST(CpvSlider, ValueAndKnobPlaceInBothOrientations)
{
    const auto h = makeSlider(cpvSlider::Horizontal);
    const auto v = makeSlider(cpvSlider::Vertical);
    struct Row {
        int value, horizontalPlace, verticalPlace;
    };
    // Up is more on a vertical slider.
    for (const Row& r : {Row{0, 0, 189}, Row{1, 2, 187}, Row{50, 95, 94}, Row{99, 187, 2}, Row{100, 189, 0}}) {
        EXPECT_EQ(h->knobPosition(r.value), r.horizontalPlace) << r.value;
        EXPECT_EQ(v->knobPosition(r.value), r.verticalPlace) << r.value;
    }
    for (int value = 0; value <= 100; ++value) {
        ASSERT_EQ(h->valueAt(h->knobPosition(value)), value);
        ASSERT_EQ(v->valueAt(v->knobPosition(value)), value);
    }
    EXPECT_EQ(h->valueAt(-20), 0);
    EXPECT_EQ(h->valueAt(500), 100);
    EXPECT_EQ(v->valueAt(500), 0);

    // A span that does not start at 0, as the balance's -50..50.
    cpvSlider balance;
    balance.setOrientation(cpvSlider::Horizontal);
    balance.resize(208, 25);
    ASSERT_TRUE(balance.setMin(-50) && balance.setMax(50));
    EXPECT_EQ(balance.knobPosition(0), 95);
    EXPECT_EQ(balance.valueAt(0), -50);
    EXPECT_EQ(balance.valueAt(189), 50);
}

TEST(CpvSlider, MouseEventsComeInTheirOrder)
{
    const auto h = makeSlider(cpvSlider::Horizontal);
    EventLog log(*h);
    // A press on the rail beside the knob makes it jump; the release clicks.
    QTest::mousePress(h.get(), Qt::LeftButton, {}, QPoint(200, 12));
    EXPECT_TRUE(h->dragging());
    EXPECT_EQ(h->findChild<QLabel*>("ValueTip")->text(), "100");
    QTest::mouseRelease(h.get(), Qt::LeftButton, {}, QPoint(200, 12));
    EXPECT_EQ(log.take(), (QStringList{"Value 100", "ArrivedLast", "MouseDown 1", "Click", "MouseUp 1"}));
    EXPECT_FALSE(h->findChild<QLabel*>("ValueTip")->isVisible());

    // A drag from the knob keeps the grab offset; the tip follows the value.
    h->setTipSuffix("%");
    ASSERT_TRUE(h->setValue(0));
    log.take();
    QTest::mousePress(h.get(), Qt::LeftButton, {}, QPoint(6, 12));
    QTest::mouseMove(h.get(), QPoint(6 + 95, 12));
    EXPECT_EQ(h->Value(), 50);
    EXPECT_EQ(h->findChild<QLabel*>("ValueTip")->text(), "50%");
    QTest::mouseMove(h.get(), QPoint(-40, 12));  // clamped at the rail's start
    QTest::mouseRelease(h.get(), Qt::LeftButton, {}, QPoint(-40, 12));  // released outside: no click
    EXPECT_EQ(log.take(), (QStringList{"MouseDown 1", "Value 50", "Value 0", "ArrivedFirst", "MouseUp 1"}));

    // Vertical: a press near the top is near Max. The right button neither
    // drags nor clicks.
    const auto v = makeSlider(cpvSlider::Vertical);
    EventLog vlog(*v);
    QTest::mousePress(v.get(), Qt::LeftButton, {}, QPoint(12, 9));
    QTest::mouseRelease(v.get(), Qt::LeftButton, {}, QPoint(12, 9));
    EXPECT_EQ(vlog.take(), (QStringList{"Value 100", "ArrivedLast", "MouseDown 1", "Click", "MouseUp 1"}));
    QTest::mousePress(v.get(), Qt::RightButton, {}, QPoint(12, 150));
    QTest::mouseRelease(v.get(), Qt::RightButton, {}, QPoint(12, 150));
    EXPECT_EQ(vlog.take(), (QStringList{"MouseDown 2"}));

    // Disabled, the mouse does nothing, and code still sets the value.
    v->setEnabled(false);
    QTest::mouseClick(v.get(), Qt::LeftButton, {}, QPoint(12, 190));
    EXPECT_TRUE(v->setValue(30));
    EXPECT_EQ(vlog.take(), (QStringList{"Value 30"}));
}

TEST(CpvSlider, InvalidValuesAreRefusedAndChangeNothing)
{
    cpvSlider s;
    EventLog log(s);
    struct Row {
        const char* what;
        std::function<bool()> set;
    };
    const Row refused[] = {{"value above Max", [&] { return s.setValue(11); }},
                           {"value below Min", [&] { return s.setValue(-1); }},
                           {"Max equal to Min", [&] { return s.setMax(0); }},
                           {"Min above Max", [&] { return s.setMin(11); }}};
    for (const Row& r : refused) {
        EXPECT_FALSE(r.set()) << r.what;
        EXPECT_EQ(s.LastError(), 380) << r.what;
    }
    EXPECT_EQ((std::vector<int>{s.Min(), s.Max(), s.Value()}), (std::vector<int>{0, 10, 0}));
    EXPECT_TRUE(s.setValue(0));  // the present value raises nothing
    EXPECT_TRUE(log.take().isEmpty());
    EXPECT_TRUE(s.setValue(10));
    EXPECT_TRUE(s.setValue(0));
    EXPECT_EQ(log.take(), (QStringList{"Value 10", "ArrivedLast", "Value 0", "ArrivedFirst"}));
    // Through the property system the refusal is the same.
    EXPECT_TRUE(s.setProperty("Value", 7));
    s.setProperty("Value", 70);
    EXPECT_EQ(s.Value(), 7);
}

}  // namespace
