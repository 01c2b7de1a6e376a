// Texts of the window that the program looks up by key at run time rather than through
// tr(): listed here so that lupdate keeps them in window_<lang>.ts. Not compiled.
// The survey window's title, localised from the window description's own title.
QT_TRANSLATE_NOOP("Localizable", "Uninstall Quorvelle")
