// One QApplication for all window tests of this program, made before the
// first test and gone after the last.
#include <QApplication>
#include <gtest/gtest.h>

namespace {

class QtApplicationEnvironment : public ::testing::Environment {
public:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app_ = new QApplication(argc_, argv_);
    }
    void TearDown() override { delete app_; }

private:
    int argc_ = 1;
    char name_[8] = "test_ui";
    char* argv_[2] = {name_, nullptr};
    QApplication* app_ = nullptr;
};

[[maybe_unused]] auto* const environment = ::testing::AddGlobalTestEnvironment(new QtApplicationEnvironment);

}  // namespace
