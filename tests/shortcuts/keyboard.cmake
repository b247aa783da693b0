tarnwell_test(key_translation_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/KeyCodeForCharacterTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/KeyTranslationGoldenTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/KeyTranslationTest.cpp
    LINKS tarnwell_shortcuts tarnwell_desktop tarnwell_fakes)
# To write the golden files anew: key_translation_test --write-golden
target_compile_definitions(key_translation_test PRIVATE
    TARNWELL_GOLDEN_FOLDER="${CMAKE_CURRENT_LIST_DIR}/golden")
