// The Tracks menu's Tag Selection entries in the main window with frmGenre
// and the input box answered as a user would, over real MP3 files.
#include "tests/support/library_maker.h"
#include "tests/support/tagged_mp3.h"
#include "ui/frm_genre.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

ModalAnswer pickGenre(int entry, const QString& typed, const char* button)
{
    return [=](QWidget* modal) {
        ASSERT_EQ(modal->windowTitle(), "Select Genre");
        auto* combo = modal->findChild<QComboBox*>("Tag2_Combo_Genre");
        auto* text = modal->findChild<QLineEdit*>("Tag2_Text_Genre");
        combo->setCurrentIndex(entry);
        emit combo->activated(entry);
        EXPECT_EQ(text->isEnabled(), entry == 149);
        if (!typed.isEmpty())
            text->setText(typed);
        modal->findChild<QPushButton*>(button)->click();
    };
}

ModalAnswer typeInput(QStringList& seen, const QString& text)
{
    return [&seen, text](QWidget* modal) {
        auto* box = qobject_cast<QInputDialog*>(modal);
        ASSERT_NE(box, nullptr) << modal->windowTitle().toStdString();
        seen << box->windowTitle() + ": " + box->labelText();
        box->setTextValue(text);
        box->accept();
    };
}

}  // namespace

TEST_F(BaseWindowTest, GenreWindowAnswersAsItsButtonsSay)
{
    const struct {
        int entry;
        QString typed;
        const char* button;
        QString answer;
    } rows[] = {
        {17, "", "Command1", "017Rock"},
        {149, "Mine", "Command1", "149Mine"},
        {17, "", "Command2", "Cancel"},
    };
    for (const auto& r : rows) {
        ModalAnswerer answerer({pickGenre(r.entry, r.typed, r.button)});
        EXPECT_EQ(ui::FrmGenre::Ask(&base), r.answer);
        EXPECT_TRUE(answerer.done());
    }
}

TEST_F(BaseWindowTest, TagSelectionFromTheTracksMenu)
{
    const QString folder = env.path("Main/Art/Alb");
    for (const char* n : {"1", "2"})
        ASSERT_TRUE(writeTaggedMp3(folder + "/" + n + ".mp3", {"Art", "Alb", n, QString("T") + n, "1990", "", false}));
    const LibraryFiles files = LibraryMaker(state.paths, env.path("Lib.vkt"))
                                   .track(makeTrack("Art", "T1", folder, "1.mp3", "Alb"))
                                   .track(makeTrack("Art", "T2", folder, "2.mp3", "Alb"))
                                   .write();
    ASSERT_EQ(start(files.vkt), StartupResult::Started);
    waitForMenuUpdate();
    for (const char* name : {"mnu_Retag_All", "mnu_Retag_Tree", "mnu_Tag_sel_Genre", "mnu_Tag_sel_Year"})
        EXPECT_TRUE(enabled(name)) << name;
    base.library().MP3_List.setSelection({0, 1}, 0);
    const QByteArray before = readFile(folder + "/1.mp3") + readFile(folder + "/2.mp3");

    {
        ModalAnswerer answerer({pickGenre(17, "", "Command2")});
        find<QAction>("mnu_Tag_sel_Genre")->trigger();
        EXPECT_TRUE(answerer.done());
    }
    EXPECT_EQ(readFile(folder + "/1.mp3") + readFile(folder + "/2.mp3"), before);

    QStringList seen;
    {
        ModalAnswerer answerer({typeInput(seen, "19a9"), typeInput(seen, "2001")});
        find<QAction>("mnu_Tag_sel_Year")->trigger();
        EXPECT_TRUE(answerer.done());
    }
    EXPECT_EQ(seen, QStringList(2, "Tag Year: Please fill in the year of the album"));
    EXPECT_EQ(column(list()->model(), ColYear), (QStringList{"2001", "2001"}));
}
