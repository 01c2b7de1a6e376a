#pragma once

// The window's fixed geometry, in device-independent pixels. The window keeps this size
// whatever the fonts, so its parts stand where these numbers say (the installation test
// probes the grabbed picture at these coordinates).
namespace AboutLayout {

constexpr int windowWidth = 600;
constexpr int windowHeight = 360;

// The gradient band across the top, start colour at the top edge.
constexpr int headerHeight = 76;

constexpr int margin = 20;
constexpr int bodyTop = headerHeight + 18;

// The radio matrix on the left chooses what the list on the right shows.
constexpr int sidebarWidth = 150;
constexpr int sidebarSpacing = 16;
constexpr int listLeft = margin + sidebarWidth + sidebarSpacing;
constexpr int listTop = bodyTop;
constexpr int listRowHeight = 26;
constexpr int listFrame = 1;
constexpr int listLabelWidth = 140;

// The buttons along the bottom.
constexpr int buttonHeight = 30;
constexpr int footerTop = 14;
constexpr int footerBottom = 16;
constexpr int closeButtonWidth = 110;
constexpr int listBottom = windowHeight - footerBottom - buttonHeight - footerTop;

} // namespace AboutLayout
