# Compiles resources/texts/ into the engine. A language is a row here and one of texts.qrc.
set(texts ${PROJECT_SOURCE_DIR}/resources/texts)
qt_add_lrelease(brightsweep_engine
  TS_FILES ${texts}/brightsweep_de.ts ${texts}/brightsweep_en.ts ${texts}/brightsweep_zh_CN.ts
  OPTIONS -idbased -silent)
configure_file(${texts}/texts.qrc ${CMAKE_CURRENT_BINARY_DIR}/texts.qrc COPYONLY)
qt_add_resources(embeddedTexts ${CMAKE_CURRENT_BINARY_DIR}/texts.qrc)
target_sources(brightsweep_engine PRIVATE ${embeddedTexts})
