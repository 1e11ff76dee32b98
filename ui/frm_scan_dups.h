#pragma once
// FrmScanDups: the groups of duplicate playlist entries one at a time, with
// boxes to tick the entries to remove. The scan and the removal are the
// core's; the window shows and asks.
#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace sonorit {
class DupScan;
}

namespace sonorit::ui {

class FrmScanDups : public QDialog {
    Q_OBJECT
public:
    FrmScanDups(DupScan& scan, QWidget* parent);

private:
    void showGroup();
    void handle(int outcome);
    std::vector<int> checkedEntries() const;

    DupScan& scan_;
    QLabel* text0_;
    QLabel* text1_;
    QTreeWidget* tracks_;  // List_Tracks
    QPushButton* prev_;
    QPushButton* next_;
};

}  // namespace sonorit::ui
