#pragma once
// Where an application finds its configuration and keeps its writable data,
// following the XDG base directory conventions.

#include <string>
#include <vector>

namespace ku::path {

// The path of the configuration file or directory `fileName` of the
// application `applicationName`, searched in this order:
//   1. $XDG_CONFIG_HOME/<application>/<file> (default ~/.config)
//   2. <dir>/<application>/<file> for each dir of $XDG_CONFIG_DIRS (default /etc/xdg)
//   3. the installed data of this project: <datadir>/render_widget/config/<application>/<file>
//   4. when the running program lies in this project's build folder, the
//      media staged there from the source tree: <build>/share/render_widget/config/...
// Returns an empty string when none exists.
std::string findConf(const std::string& applicationName, const std::string& fileName);

// The folders findConf searches, in order, each ending in "/".
std::vector<std::string> configSearchFolders();

// The project's read-only data folder (configuration, media, robots), without
// a trailing "/": <build>/share/render_widget when the running program lies in
// this project's build folder and that folder exists, otherwise the installed
// <datadir>/render_widget (which need not exist).
std::string dataFolder();

// $XDG_DATA_HOME/<application>/<file> (default ~/.local/share), creating the
// application's folder. The file itself is not created.
std::string userWritableDataPath(const std::string& applicationName, const std::string& fileName);

}  // namespace ku::path
