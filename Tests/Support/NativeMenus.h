// Native menus, read back item by item.
#pragma once

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace NSMorvaneTest {

using MenuLines = std::vector<std::string>;

// A line for each item: its text, its number in hexadecimal, its state. A separator is "--". A submenu has a
// colon in the place of the number and its items below it, two blanks to the right.
inline void DescribeMenu(HMENU menu, MenuLines& lines, const std::string& indent = "") {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    wchar_t text[300] = {};
    MENUITEMINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING;
    info.dwTypeData = text;
    info.cch = 300;
    GetMenuItemInfoW(menu, i, TRUE, &info);
    std::string line = indent;
    for (const wchar_t* c = text; *c; ++c) line += *c < 128 ? static_cast<char>(*c) : '?';
    char number[20];
    std::snprintf(number, sizeof(number), " %X", info.wID);
    if (info.fType & MFT_SEPARATOR)
      line += "--";
    else
      line += info.hSubMenu ? ":" : number;
    if (!(info.fType & MFT_SEPARATOR) && (info.fState & MFS_GRAYED)) line += " grey";
    if (info.fState & MFS_CHECKED) line += " checked";
    lines.push_back(line);
    if (info.hSubMenu) DescribeMenu(info.hSubMenu, lines, indent + "  ");
  }
}

// Lines that stand in one text, with a bar between them.
inline MenuLines SplitLines(const std::string& text) {
  MenuLines lines(1);
  for (const char c : text) {
    if (c == '|')
      lines.emplace_back();
    else
      lines.back() += c;
  }
  return lines;
}

inline MenuLines LinesOfMenu(HMENU menu) {
  MenuLines lines;
  DescribeMenu(menu, lines);
  return lines;
}

}  // namespace NSMorvaneTest
