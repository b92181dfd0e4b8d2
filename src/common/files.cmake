list(APPEND TESSALY_SOURCES
  src/common/character_references.cpp
  src/common/convert.cpp
  src/common/document_io.cpp
  src/common/error.cpp
  src/common/event_log.cpp
  src/common/section_release.cpp
  src/common/xml_out.cpp
  src/common/xml_text_writer.cpp
  src/common/xml_util.cpp)
