#include "entrylist/SearchMenu.h"

namespace saldo {

std::string_view SearchMenu::title()
{
    return "Menu";
}

const std::vector<SearchMenu::Item>& SearchMenu::items()
{
    static const std::vector<Item> menu = {
        { "Name", true, {} },
        { "Kategorie", true, {} },
        { "Art", true, {} },
        { "Non EU", true, {} },
        { "Innergemeinschaftlich", true, {} },
        { "Brutto", false, { { "Brutto >=", true, {} }, { "Brutto =", true, {} }, { "Brutto <=", true, {} } } },
        { "Netto", false, { { "Netto >=", true, {} }, { "Netto <=", true, {} } } },
        { "Steuersatz", false,
            { { "Steuersatz >=", true, {} }, { "Steuersatz =", true, {} }, { "Steuersatz <=", true, {} } } },
        { "Datum", false, { { "Datum >=", true, {} }, { "Datum =", true, {} }, { "Datum <=", true, {} } } },
    };
    return menu;
}

std::string_view SearchMenu::initialMode()
{
    return "Name";
}

std::vector<std::string> SearchMenu::modes()
{
    std::vector<std::string> result;
    for (const Item& item : items()) {
        if (item.choosesMode)
            result.push_back(item.title);
        for (const Item& sub : item.submenu)
            if (sub.choosesMode)
                result.push_back(sub.title);
    }
    return result;
}

}  // namespace saldo
