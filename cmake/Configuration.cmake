# Build-time configuration of the vendor's services. These are compiled in: the program
# has no settings file, options or environment variables.
set(QV_COMPANY_DOMAIN "brelltan.net" CACHE STRING "Company domain, base of every service host")
set(QV_PRODUCT_WEBSITE_HOST "www.quorvelle.com" CACHE STRING "Host of the product's web pages")
set(QV_SUPPORT_EMAIL "support@quorvelle.com" CACHE STRING "Support e-mail address")
set(QV_PARTNER_OFFER_URL "http://store.halvenmark.com/checkout/?c=QVL7R2K&tid=UNS4X9P"
  CACHE STRING "Partner offer page opened by the get-it-for-free button")
