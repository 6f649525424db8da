#include "entrylist/EntryLists.h"
#include "platform/DeleteConfirmation.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>

#include <cstdlib>

namespace saldo::gui {
namespace {

TEST(DeleteConfirmationTest, AsksCriticallyWithOkFirstAndTheCountedNoun)
{
    auto [box, ok] = DeleteConfirmation::create(nullptr, QString::fromStdString(EntryLists::deleteConfirmationText(3)));
    EXPECT_EQ(box->icon(), QMessageBox::Critical);
    EXPECT_EQ(box->text(), QStringLiteral("Moechten Sie 3 Eintraege loeschen?"));
    EXPECT_TRUE(box->informativeText().isEmpty());
    const QList<QAbstractButton*> buttons = box->buttons();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(box->buttonRole(buttons[0]), QMessageBox::AcceptRole);
    EXPECT_EQ(buttons[0]->text(), QStringLiteral("OK"));
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("Abbrechen"));
    EXPECT_EQ(box->defaultButton(), ok);

    // Answering: only the OK button confirms.
    ok->click();
    EXPECT_EQ(box->clickedButton(), ok);
}

// Writes the alert as a PNG when SALDO_SCREENSHOT_DIR names a directory (the
// screenshots script sets it).
TEST(DeleteConfirmationPicture, ScreenshotsWhenAsked)
{
    const char* dir = std::getenv("SALDO_SCREENSHOT_DIR");
    if (!dir || !*dir)
        GTEST_SKIP() << "SALDO_SCREENSHOT_DIR not set";
    QDir().mkpath(QString::fromLocal8Bit(dir));
    auto [box, ok] = DeleteConfirmation::create(nullptr, QString::fromStdString(EntryLists::deleteConfirmationText(3)));
    box->show();
    box->adjustSize();
    const QString path = QDir(QString::fromLocal8Bit(dir)).filePath(QStringLiteral("delete-confirmation.png"));
    EXPECT_TRUE(box->grab().save(path)) << path.toStdString();
}

}  // namespace
}  // namespace saldo::gui
