#pragma once

#include "platform/Dialogs.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <deque>

namespace saldo::gui::testing {

// Answers every dialog from a script instead of showing it, records what was
// asked, and installs itself for the lifetime of the object. An unscripted
// question gets the cautious answer (cancel / refuse / no file).
class ScriptedDialogs : public Dialogs {
public:
    ScriptedDialogs() { previous_ = Dialogs::setInstance(this); }
    ~ScriptedDialogs() override { Dialogs::setInstance(previous_); }
    ScriptedDialogs(const ScriptedDialogs&) = delete;
    ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;

    std::deque<bool> confirmAnswers;
    std::deque<SaveChoice> saveChoices;
    std::deque<FileChangedChoice> fileChangedChoices;
    std::deque<bool> restoreAnswers; // unscripted: restore, which deletes nothing
    std::deque<QString> openFileNames;
    std::deque<QString> saveFileNames;
    // Save panels begun and not yet closed; finishSave() closes the oldest.
    std::deque<SaveCompletion> openSavePanels;
    std::deque<bool> printAnswers; // unscripted: cancel the print dialog
    std::deque<int> chosenItems; // unscripted: cancel the choice
    QStringList offeredItems; // the items of the last choice

    QStringList asked; // texts of every confirmation and save question
    QStringList errors; // "text\ninformative text" of every error shown
    QStringList informations;
    int printPageCount = -1; // the pages the last print dialog offered
    QStringList openDirectories; // where each open panel started

    bool confirmDelete(QWidget*, const QString& text) override { return next(confirmAnswers, text, false); }
    bool confirm(QWidget*, const QString& text, const QString&, const QString&, const QString&) override
    {
        return next(confirmAnswers, text, false);
    }
    SaveChoice askSaveChanges(QWidget*, const QString& documentName) override
    {
        return next(saveChoices, documentName, SaveChoice::Cancel);
    }
    FileChangedChoice askFileChanged(QWidget*, const QString& documentName) override
    {
        return next(fileChangedChoices, documentName, FileChangedChoice::Cancel);
    }
    bool askRestoreDocument(QWidget*, const QString& text, const QString&) override
    {
        return next(restoreAnswers, text, true);
    }
    QString getOpenFileName(QWidget*, const QString& caption, const QString&, const QString& directory) override
    {
        openDirectories << directory;
        return next(openFileNames, caption, QString());
    }
    QString getSaveFileName(QWidget*, const QString& caption, const QString&, const QString&) override
    {
        return next(saveFileNames, caption, QString());
    }
    void beginSaveFileName(
        QWidget*, const QString& caption, const QString&, const QString&, SaveCompletion completion) override
    {
        asked << caption;
        openSavePanels.push_back(std::move(completion));
    }
    // Closes the oldest open save panel with `path` (empty: cancelled).
    void finishSave(const QString& path)
    {
        ASSERT_FALSE(openSavePanels.empty());
        const SaveCompletion completion = std::move(openSavePanels.front());
        openSavePanels.pop_front();
        completion(path);
    }
    void showError(QWidget*, const QString& text, const QString& informativeText) override
    {
        errors << text + QLatin1Char('\n') + informativeText;
    }
    void showInformation(QWidget*, const QString& text, const QString& informativeText) override
    {
        informations << text + QLatin1Char('\n') + informativeText;
    }
    bool askPrintSettings(QWidget*, QPrinter&, int pageCount) override
    {
        printPageCount = pageCount;
        return next(printAnswers, QStringLiteral("Drucken"), false);
    }
    int chooseItem(QWidget*, const QString& text, const QString&, const QStringList& items) override
    {
        offeredItems = items;
        return next(chosenItems, text, -1);
    }
    void showPrintPreview(QWidget*, QPrinter&, const std::function<void(QPrinter&)>&) override
    {
        asked << QStringLiteral("Druckvorschau");
    }

private:
    template <typename T> T next(std::deque<T>& answers, const QString& question, T fallback)
    {
        asked << question;
        if (answers.empty())
            return fallback;
        T answer = answers.front();
        answers.pop_front();
        return answer;
    }

    Dialogs* previous_ = nullptr;
};

} // namespace saldo::gui::testing
