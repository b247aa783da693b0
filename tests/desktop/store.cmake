add_executable(preferences_peer PreferencesPeer.cpp)
target_link_libraries(preferences_peer PRIVATE tarnwell_desktop)

tarnwell_test(desktop_preferences_test
    SOURCES FilePreferencesTest.cpp FilePreferencesLinksTest.cpp
            FilePreferencesProcessesTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes
    TIMEOUT 300)
target_compile_definitions(desktop_preferences_test PRIVATE
    TARNWELL_PREFERENCES_PEER="$<TARGET_FILE:preferences_peer>")
add_dependencies(desktop_preferences_test preferences_peer)

# A program of its own: it puts itself between the store and the C library.
tarnwell_test(desktop_preferences_calls_test
    SOURCES FilePreferencesCallsTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes ${CMAKE_DL_LIBS})

add_executable(notification_peer NotificationPeer.cpp)
target_link_libraries(notification_peer PRIVATE tarnwell_desktop)

tarnwell_test(desktop_notifications_test
    SOURCES DistributedNotificationsTest.cpp NotificationsTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes)
target_compile_definitions(desktop_notifications_test PRIVATE
    TARNWELL_NOTIFICATION_PEER="$<TARGET_FILE:notification_peer>")
add_dependencies(desktop_notifications_test notification_peer)

tarnwell_test(desktop_system_test
    SOURCES SystemTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes)
