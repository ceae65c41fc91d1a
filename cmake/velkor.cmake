# Flags and small helpers that every target shares.

add_library(velkor_options INTERFACE)
target_compile_options(velkor_options INTERFACE -Wall -Wextra -Wpedantic -pthread)
target_compile_definitions(velkor_options INTERFACE QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_MESSAGELOGCONTEXT)
target_include_directories(velkor_options INTERFACE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR})
if(VELKOR_SANITIZE)
    target_compile_options(velkor_options INTERFACE -fsanitize=${VELKOR_SANITIZE} -fno-sanitize-recover=undefined)
    target_link_options(velkor_options INTERFACE -fsanitize=${VELKOR_SANITIZE})
    if(VELKOR_SANITIZE MATCHES "undefined")
        # The toolkit's libraries carry no run-time type information for the check of virtual calls.
        target_compile_options(velkor_options INTERFACE -fno-sanitize=vptr)
    endif()
endif()

if(VELKOR_PCH)
    file(WRITE ${CMAKE_BINARY_DIR}/pch.cpp "// The target exists for its precompiled header.\n")
    add_library(velkor_pch STATIC ${CMAKE_BINARY_DIR}/pch.cpp)
    target_link_libraries(velkor_pch PUBLIC velkor_options Qt5::Core Qt5::Network Qt5::Concurrent)
    target_precompile_headers(velkor_pch PRIVATE <QtCore/QtCore> <QtNetwork/QtNetwork> <QtConcurrent/QtConcurrent>)
endif()

# velkor_module(<name>): the static library of the folder it is called in, made of all of its sources. What it may
# include is what the folder's own target_link_libraries names.
function(velkor_module name)
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
    add_library(velkor_${name} STATIC ${sources})
    velkor_reuse_pch(velkor_${name})
endfunction()

function(velkor_reuse_pch target)
    target_link_libraries(${target} PUBLIC velkor_options Qt5::Core Qt5::Network Qt5::Concurrent)
    if(VELKOR_PCH)
        target_precompile_headers(${target} REUSE_FROM velkor_pch)
    endif()
endfunction()
