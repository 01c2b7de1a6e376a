# Build-time configuration of the vendor's services. These are compiled in: the program
# has no settings file, options or environment variables.
set(QV_COMPANY_DOMAIN "brelltan.net" CACHE STRING "Company domain, base of every service host")
set(QV_PRODUCT_WEBSITE_HOST "www.quorvelle.com" CACHE STRING "Host of the product's web pages")
set(QV_SUPPORT_EMAIL "support@quorvelle.com" CACHE STRING "Support e-mail address")
set(QV_PARTNER_OFFER_URL "http://store.halvenmark.com/checkout/?c=QVL7R2K&tid=UNS4X9P"
  CACHE STRING "Partner offer page opened by the get-it-for-free button")

# The maker, as the package and the AppStream metadata name it.
set(QV_VENDOR_NAME "Brelltan")

# Installed layout. The program finds its data folder (window description, translations,
# images) and its privileged helper relative to its own folder, so the same binary works
# under any prefix (a package in /usr, a `cmake --install --prefix` anywhere) and no
# absolute path of the build machine ends up in it.
set(QV_PROGRAM_INSTALL_NAME "quorvelle-uninstaller")
set(QV_DATA_INSTALL_DIR "${CMAKE_INSTALL_DATADIR}/quorvelle-uninstaller")
set(QV_HELPER_INSTALL_DIR "${CMAKE_INSTALL_LIBEXECDIR}/quorvelle")
# The desktop entry's name is the application's identifier (reversed company domain).
string(REPLACE "." ";" qv_domain_parts "${QV_COMPANY_DOMAIN}")
list(REVERSE qv_domain_parts)
list(JOIN qv_domain_parts "." qv_reverse_domain)
set(QV_DESKTOP_FILE_NAME "${qv_reverse_domain}.Quorvelle.Uninstaller")
file(RELATIVE_PATH QV_DATA_FROM_BIN
  "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_DATADIR}/quorvelle-uninstaller")
file(RELATIVE_PATH QV_HELPER_FROM_BIN
  "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBEXECDIR}/quorvelle")
