#include "platform/GermanTranslations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace saldo::gui {

bool GermanTranslations::install(QCoreApplication& application)
{
    auto* translator = new QTranslator(&application);
    if (translator->load(QStringLiteral("qtbase_de"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))
        && QCoreApplication::installTranslator(translator))
        return true;
    delete translator;
    return false;
}

} // namespace saldo::gui
