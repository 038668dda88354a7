#pragma once
// The system's special folders by their CSIDL numbers.

#include <QString>

constexpr int CSIDL_APPDATA = 26;

// Folder path with no trailing separator; empty when the system has no such folder.
QString GetSpecialFolder(int csidl);
