#pragma once
// frmGenre, "Select Genre": the genre controls of the Tag2 panel on their
// own, for tagging a selection. Modal.
#include <QDialog>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace sonorit::ui {

class FrmGenre : public QDialog {
public:
    explicit FrmGenre(QWidget* parent);

    // Command1: three digits of the genre index, then the genre's text.
    // Command2 (or closing the window): "Cancel".
    QString answer() const { return answer_; }

    // Shows the window modally and returns its answer.
    static QString Ask(QWidget* parent);

private:
    void comboClicked(int entry);

    QComboBox* combo_;    // Tag2_Combo_Genre
    QLineEdit* text_;     // Tag2_Text_Genre
    QPushButton* ok_;     // Command1
    QPushButton* cancel_; // Command2
    QString answer_ = QStringLiteral("Cancel");
};

}  // namespace sonorit::ui
