#include "frm_scan_dups.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "playback/dup_scan.h"

namespace sonorit::ui {

namespace {

constexpr int kEntryRole = Qt::UserRole;

QPushButton* button(const char* name, const char* text)
{
    auto* b = new QPushButton(QString::fromUtf8(text));
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

}  // namespace

FrmScanDups::FrmScanDups(DupScan& scan, QWidget* parent)
    : QDialog(parent), scan_(scan), text0_(new QLabel), text1_(new QLabel), tracks_(new QTreeWidget)
{
    setObjectName(QStringLiteral("FrmScanDups"));
    setWindowTitle(QStringLiteral("Scan (and remove) duplicate tracks from current playlist"));
    text0_->setObjectName(QStringLiteral("Text0"));
    text0_->setWordWrap(true);
    text1_->setObjectName(QStringLiteral("Text1"));
    tracks_->setObjectName(QStringLiteral("List_Tracks"));
    tracks_->setRootIsDecorated(false);
    tracks_->setHeaderLabels({QStringLiteral("Artist"), QStringLiteral("Album"), QStringLiteral("Title"),
                              QStringLiteral("Time")});
    tracks_->header()->setSectionResizeMode(QHeaderView::Stretch);
    connect(tracks_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item)
            text1_->setText(scan_.filenameText(item->data(0, kEntryRole).toInt()));
    });

    prev_ = button("cmdPrev", "&Previous");
    next_ = button("cmdNext", "&Next");
    QPushButton* rescan = button("cmdRescan", "&Restart Scan");
    QPushButton* remove = button("cmdRemove", "Re&move Checked Tracks");
    QPushButton* closeButton = button("cmdClose", "&Close");
    connect(prev_, &QPushButton::clicked, this, [this] {
        scan_.cmdPrev();
        showGroup();
    });
    connect(next_, &QPushButton::clicked, this, [this] {
        scan_.cmdNext();
        showGroup();
    });
    connect(rescan, &QPushButton::clicked, this, [this] { handle(int(scan_.cmdRescan())); });
    connect(remove, &QPushButton::clicked, this, [this] { handle(int(scan_.cmdRemove(checkedEntries()))); });
    connect(closeButton, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {prev_, next_, rescan, remove})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(closeButton);
    auto* column = new QVBoxLayout(this);
    column->addWidget(text0_);
    column->addWidget(tracks_, 1);
    column->addWidget(text1_);
    column->addLayout(buttons);
    resize(640, 360);
    showGroup();
}

void FrmScanDups::showGroup()
{
    if (scan_.Dup_Count() == 0)
        return;
    text0_->setText(scan_.Text0().replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    text1_->setText(DupScan::Text1Hint());
    tracks_->clear();
    for (int entry : scan_.currentGroup().entries) {
        const PlayRow row = scan_.entryRow(entry);
        auto* item = new QTreeWidgetItem(tracks_, QStringList(row.begin(), row.end()));
        item->setData(0, kEntryRole, entry);
        item->setCheckState(0, Qt::Unchecked);
    }
    prev_->setEnabled(scan_.prevEnabled());
    next_->setEnabled(scan_.nextEnabled());
}

std::vector<int> FrmScanDups::checkedEntries() const
{
    std::vector<int> entries;
    for (int i = 0; i < tracks_->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = tracks_->topLevelItem(i);
        if (item->checkState(0) == Qt::Checked)
            entries.push_back(item->data(0, kEntryRole).toInt());
    }
    return entries;
}

void FrmScanDups::handle(int outcome)
{
    switch (DupScan::Outcome(outcome)) {
    case DupScan::Outcome::Showing:
        showGroup();
        break;
    case DupScan::Outcome::Closed:
        accept();
        break;
    case DupScan::Outcome::Nothing:
    case DupScan::Outcome::Refused:
        break;
    }
}

}  // namespace sonorit::ui
