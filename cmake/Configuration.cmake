# What a build may be told. Hosts default to names under .invalid, which belong to nobody and never resolve,
# so that a build that was told nothing speaks to nobody.
set(SORVANTA_MODEL_SERVER "https://models.sorvanta.invalid" CACHE STRING
  "Base address of the server that carries the ggml model files (HTTPS)")
set(SORVANTA_WEB_SITE "https://www.sorvanta.invalid" CACHE STRING
  "Web site with the terms and the privacy policy")
set(SORVANTA_SUPPORT_ADDRESS "support@sorvanta.invalid" CACHE STRING
  "Mail address that the Help section names")
set(SORVANTA_SHORT_VERSION "${PROJECT_VERSION}" CACHE STRING
  "Version shown in the window; may be empty")
set(SORVANTA_BUILD_VERSION "1" CACHE STRING
  "Build number shown behind the version; may be empty")
