// The removal's consent prompt, shown by polkit from the policy file (whose <message>
// entries must match removal_<lang>.ts): listed here so that lupdate keeps it. Not compiled.
QT_TRANSLATE_NOOP("Localizable", "Please enter your password to uninstall Quorvelle.")
