#pragma once
// ProgressBox: the panel that long library commands show over the list, with
// the main text Label17, the detail text Label18 and ProgressBar1. It sits
// centred on LibShield, which always shows and hides together with it.
#include <QFrame>

class QLabel;
class QProgressBar;

namespace sonorit::ui {

class ProgressPanel : public QFrame {
public:
    explicit ProgressPanel(QWidget* parent);

    void clearTexts();
    void setMainText(const QString& text);
    void setDetailText(const QString& text);
    void setRange(int minimum, int maximum);
    void setValue(int value);

private:
    QLabel* label17_;
    QLabel* label18_;
    QProgressBar* bar_;
};

}  // namespace sonorit::ui
