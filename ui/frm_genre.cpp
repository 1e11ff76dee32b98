#include "frm_genre.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

#include "tagedit/selection_tagging.h"
#include "tags/id3v1.h"

namespace sonorit::ui {

namespace {
constexpr int kUnknown = 148;
constexpr int kUserDefined = 149;
}  // namespace

FrmGenre::FrmGenre(QWidget* parent)
    : QDialog(parent),
      combo_(new QComboBox(this)),
      text_(new QLineEdit(this)),
      ok_(new QPushButton(QStringLiteral("OK"), this)),
      cancel_(new QPushButton(QStringLiteral("Cancel"), this))
{
    setObjectName(QStringLiteral("frmGenre"));
    setWindowTitle(QStringLiteral("Select Genre"));
    setModal(true);
    combo_->setObjectName(QStringLiteral("Tag2_Combo_Genre"));
    text_->setObjectName(QStringLiteral("Tag2_Text_Genre"));
    ok_->setObjectName(QStringLiteral("Command1"));
    cancel_->setObjectName(QStringLiteral("Command2"));
    combo_->addItems(Genre_Names());
    combo_->setMaxVisibleItems(20);

    auto* grid = new QGridLayout(this);
    grid->addWidget(combo_, 0, 0, 1, 2);
    grid->addWidget(text_, 1, 0, 1, 2);
    grid->addWidget(ok_, 2, 0);
    grid->addWidget(cancel_, 2, 1);
    ok_->setDefault(true);

    combo_->setCurrentIndex(kUnknown);
    comboClicked(kUnknown);
    connect(combo_, &QComboBox::activated, this, [this](int entry) { comboClicked(entry); });
    connect(ok_, &QPushButton::clicked, this, [this] {
        answer_ = Genre_Answer(combo_->currentIndex(), text_->text());
        accept();
    });
    connect(cancel_, &QPushButton::clicked, this, [this] {
        answer_ = QStringLiteral("Cancel");
        reject();
    });
}

// As Tag2_Combo_Genre of the panel: the name in the box; "User Defined"
// opens the box empty for the user's own text.
void FrmGenre::comboClicked(int entry)
{
    if (entry == kUserDefined) {
        text_->setEnabled(true);
        text_->clear();
        text_->setFocus();
        return;
    }
    text_->setText(entry >= 0 ? Genre_Names().value(entry) : QString());
    text_->setEnabled(false);
}

QString FrmGenre::Ask(QWidget* parent)
{
    FrmGenre window(parent);
    window.exec();
    return window.answer();
}

}  // namespace sonorit::ui
