#include "progress_panel.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace sonorit::ui {

namespace {
// Wide enough for "Reading Library File: " and a path of usual length.
constexpr int kPanelWidth = 600;
}  // namespace

ProgressPanel::ProgressPanel(QWidget* parent)
    : QFrame(parent), label17_(new QLabel(this)), label18_(new QLabel(this)), bar_(new QProgressBar(this))
{
    setObjectName(QStringLiteral("ProgressBox"));
    label17_->setObjectName(QStringLiteral("Label17"));
    label18_->setObjectName(QStringLiteral("Label18"));
    bar_->setObjectName(QStringLiteral("ProgressBar1"));
    setFrameShape(QFrame::Panel);
    setFrameShadow(QFrame::Raised);
    setAutoFillBackground(true);
    // Long paths must not widen the panel beyond the window.
    for (QLabel* label : {label17_, label18_}) {
        label->setMinimumWidth(1);
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label17_);
    layout->addWidget(label18_);
    layout->addWidget(bar_);
    setFixedWidth(kPanelWidth);
    hide();
}

void ProgressPanel::clearTexts()
{
    label17_->clear();
    label18_->clear();
}

// The labels are set often inside loops that yield only now and then; the
// next served paint shows the latest text, so no repaint is forced here.
void ProgressPanel::setMainText(const QString& text) { label17_->setText(text); }
void ProgressPanel::setDetailText(const QString& text) { label18_->setText(text); }

void ProgressPanel::setRange(int minimum, int maximum)
{
    bar_->setRange(minimum, maximum);
}

void ProgressPanel::setValue(int value)
{
    bar_->setValue(value);
}

}  // namespace sonorit::ui
