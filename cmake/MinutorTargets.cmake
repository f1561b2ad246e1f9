# Compiler settings shared by every target of ours.
function(minutor_target_settings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  if(MINUTOR_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  target_compile_definitions(${target} PRIVATE QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
  if(MINUTOR_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined,float-cast-overflow -fno-omit-frame-pointer
                                             -fno-sanitize-recover=undefined,float-cast-overflow)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined,float-cast-overflow)
  endif()
endfunction()

# minutor_add_test(NAME <name> SOURCES <files...> LABEL <logic|platform|ui> [LIBS <libs...>] [LOCALE <locale>])
# Makes one executable per test file and registers it with ctest. The locale is
# pinned so that a test never inherits the decimal sign of the machine.
function(minutor_add_test)
  cmake_parse_arguments(T "" "NAME;LABEL;LOCALE" "SOURCES;LIBS" ${ARGN})
  if(NOT T_LOCALE)
    set(T_LOCALE de_DE.UTF-8)
  endif()
  add_executable(${T_NAME} ${T_SOURCES})
  minutor_target_settings(${T_NAME})
  target_link_libraries(${T_NAME} PRIVATE minutor_testsupport Qt6::Test ${T_LIBS})
  add_test(NAME ${T_NAME} COMMAND ${T_NAME})
  set_tests_properties(${T_NAME} PROPERTIES
    LABELS ${T_LABEL}
    TIMEOUT 300
    ENVIRONMENT "LC_ALL=${T_LOCALE};LANG=${T_LOCALE};QT_QPA_PLATFORM=offscreen;TZ=Europe/Berlin;MINUTOR_SOURCE_DIR=${CMAKE_SOURCE_DIR}")
endfunction()
