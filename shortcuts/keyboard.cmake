list(APPEND shortcuts_sources
    KeyTranslation.cpp
    KeyTranslationRecords.cpp
    SpecialKeys.cpp)
