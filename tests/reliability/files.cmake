# Reliability: hostile documents, round-trip stability, threads and memory.
set(TESSALY_RELIABILITY_TEST_SOURCES
  reliability/hostile_documents_test.cpp
  reliability/large_documents_test.cpp
  reliability/memory_test.cpp
  reliability/model_text.cpp
  reliability/round_trip_stability_test.cpp
  reliability/threads_test.cpp)
list(APPEND TESSALY_TEST_SOURCES ${TESSALY_RELIABILITY_TEST_SOURCES})

# The round trips of generated documents need the generator, built with the benchmarks.
if(TESSALY_BUILD_BENCHMARKS)
  set_source_files_properties(reliability/round_trip_stability_test.cpp
    PROPERTIES COMPILE_DEFINITIONS TESSALY_HAS_GENERATOR=1)
endif()

# In a sanitizer build, the reliability tests also make a binary of their own, so that the
# ThreadSanitizer job of scripts/ci-reliability.sh builds the library and these tests only.
if(TESSALY_SANITIZE)
  list(TRANSFORM TESSALY_RELIABILITY_TEST_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/../
       OUTPUT_VARIABLE tessaly_reliability_sources)
  add_executable(tessaly_reliability_tests ${tessaly_reliability_sources}
                 ${CMAKE_CURRENT_LIST_DIR}/../support/test_support.cpp)
  target_include_directories(tessaly_reliability_tests PRIVATE ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_LIST_DIR}/..)
  target_link_libraries(tessaly_reliability_tests PRIVATE tessaly GTest::gtest_main Threads::Threads tessaly_warnings)
  target_compile_definitions(tessaly_reliability_tests PRIVATE TESSALY_TEST_DOCUMENTS="${CMAKE_CURRENT_LIST_DIR}/../documents")
  if(TESSALY_BUILD_BENCHMARKS)
    target_link_libraries(tessaly_reliability_tests PRIVATE tessaly_generator)
  endif()
endif()
