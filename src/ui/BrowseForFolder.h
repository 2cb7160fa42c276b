#pragma once

#include <QString>

namespace pvardo::ui {

// The folder picker: folders only, under the given title. Gives the chosen
// folder, or the empty text when the user cancels. The dialog (object name
// "BrowseForFolder") runs through the prompt service.
QString BrowseForFolder(const QString& title, const QString& startFolder = QString());

} // namespace pvardo::ui
