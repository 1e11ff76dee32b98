#include "qt_ui_port.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

#include "progress_panel.h"
#include "shell/helpers.h"
#include "window_shield.h"

namespace sonorit::ui {

namespace {

// Loops of thousands of items yield at each one; serving the queue that often
// would cost more than the work, and 20 ms keeps the window responsive.
constexpr qint64 kYieldIntervalMs = 20;

QMessageBox::StandardButtons standardButtons(Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok: return QMessageBox::Ok;
    case Buttons::OkCancel: return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo: return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel: return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::None: return QMessageBox::NoIcon;
    case Icon::Information: return QMessageBox::Information;
    case Icon::Warning: return QMessageBox::Warning;
    case Icon::Critical: return QMessageBox::Critical;
    case Icon::Question: return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

// A box closed without a button (Escape, window close) gives the answer that
// changes nothing: Cancel where offered, else No, else OK.
Answer answerOf(int clicked, Buttons buttons)
{
    switch (clicked) {
    case QMessageBox::Ok: return Answer::Ok;
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    case QMessageBox::Cancel: return Answer::Cancel;
    default: break;
    }
    switch (buttons) {
    case Buttons::Ok: return Answer::Ok;
    case Buttons::YesNo: return Answer::No;
    case Buttons::OkCancel:
    case Buttons::YesNoCancel: return Answer::Cancel;
    }
    return Answer::Cancel;
}

}  // namespace

QString Display_Text(const QString& text)
{
    // Each pair counts once and a lone CR or LF counts too, so that "CR LF CR"
    // gives two breaks whichever way it is read.
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c != QLatin1Char('\r') && c != QLatin1Char('\n')) {
            shown += c;
            continue;
        }
        shown += QLatin1Char('\n');
        const QChar partner = c == QLatin1Char('\r') ? QLatin1Char('\n') : QLatin1Char('\r');
        if (i + 1 < text.size() && text[i + 1] == partner)
            ++i;
    }
    return shown;
}

QString Name_Filter(const QString& description, const QString& pattern)
{
    QString patterns = pattern;
    patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
    if (description.endsWith(QLatin1Char('(') + pattern + QLatin1Char(')')))
        return description.left(description.size() - pattern.size() - 1) + patterns + QLatin1Char(')');
    return description + QStringLiteral(" (") + patterns + QLatin1Char(')');
}

QtUiPort::QtUiPort(QWidget* window, QWidget* list, WindowShield& shield, ProgressPanel& progress)
    : window_(window), list_(list), shield_(shield), progress_(progress)
{
}

// Dialogs stand over the window the user works in: the large cover window
// stays on top of everything else.
QWidget* QtUiPort::dialogParent() const
{
    QWidget* active = QApplication::activeWindow();
    return active && active->isVisible() ? active : window_;
}

Answer QtUiPort::message(const QString& text, const QString& title, Buttons buttons, Icon icon)
{
    QMessageBox box(boxIcon(icon), title, Display_Text(text), standardButtons(buttons), dialogParent());
    box.setTextFormat(Qt::PlainText);  // paths and tags may hold "<"
    return answerOf(box.exec(), buttons);
}

Answer QtUiPort::question(const QString& text, const QString& title, Buttons buttons, Icon icon,
                          Answer defaultButton)
{
    QMessageBox box(boxIcon(icon), title, Display_Text(text), standardButtons(buttons), window_);
    box.setTextFormat(Qt::PlainText);
    const QMessageBox::StandardButton preferred = defaultButton == Answer::Yes  ? QMessageBox::Yes
                                                  : defaultButton == Answer::No ? QMessageBox::No
                                                  : defaultButton == Answer::Ok ? QMessageBox::Ok
                                                                                : QMessageBox::Cancel;
    if (box.button(preferred))
        box.setDefaultButton(preferred);
    return answerOf(box.exec(), buttons);
}

QString QtUiPort::fileDialog(const FileDialogRequest& request)
{
    QFileDialog dialog(dialogParent(), request.title, request.startFolder);
    dialog.setNameFilter(Name_Filter(request.filterDescription, request.filterPattern));
    dialog.setDefaultSuffix(request.defaultExtension);
    if (request.mode == FileDialogMode::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
    } else {
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        dialog.setFileMode(request.multiSelect ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    }
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    return Join_Dialog_Selection(dialog.selectedFiles());
}

QString QtUiPort::browseForFolder()
{
    QFileDialog dialog(dialogParent(), QStringLiteral("Browse for Folder"));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().constFirst();
}

QString QtUiPort::input(const QString& prompt, const QString& title, const QString& defaultText)
{
    QInputDialog box(dialogParent());
    box.setObjectName(QStringLiteral("InputBox"));
    box.setWindowTitle(title);
    box.setLabelText(Display_Text(prompt));
    box.setTextValue(defaultText);
    return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

void QtUiPort::lockMainWindow() { shield_.lock(); }
void QtUiPort::unlockMainWindow() { shield_.unlock(); }
void QtUiPort::showProgress() { shield_.showProgress(); }
void QtUiPort::shieldLibrary() { shield_.shield(); }
void QtUiPort::unshieldLibrary() { shield_.unshield(); }
// Ending the progress display also ends the shield that came with it.
void QtUiPort::hideProgress() { shield_.unshield(); }
void QtUiPort::setLabel17(const QString& text) { progress_.setMainText(text); }
void QtUiPort::setLabel18(const QString& text) { progress_.setDetailText(text); }
void QtUiPort::setProgressRange(int minimum, int maximum) { progress_.setRange(minimum, maximum); }
void QtUiPort::setProgressValue(int value) { progress_.setValue(value); }
void QtUiPort::setCaption(const QString& text) { window_->setWindowTitle(text); }
void QtUiPort::focusLibraryList() { list_->setFocus(); }

void QtUiPort::yield()
{
    if (sinceYield_.isValid() && sinceYield_.elapsed() < kYieldIntervalMs)
        return;
    QApplication::processEvents();
    sinceYield_.start();
}

}  // namespace sonorit::ui
