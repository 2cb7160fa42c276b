# Helpers that give every subsystem folder the same shape: the rules of the
# record as a logic library that never sees a widget, and its screens as a
# second library on top of it.

set_property(GLOBAL PROPERTY PVARDO_LOGIC_LIBRARIES "")
set_property(GLOBAL PROPERTY PVARDO_SCREENS_LIBRARIES "")

# The sources of the calling folder, without its subfolders and without the
# main.cpp of a program that lives beside its library.
function(_pvardo_folder_sources out)
    file(GLOB found CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    list(FILTER found EXCLUDE REGEX "/main\\.cpp$")
    set(${out} ${found} PARENT_SCOPE)
endfunction()

# pvardo_logic_library(<target> [DEPENDS <targets>...])
# Builds every .cpp of the calling folder (not of its subfolders) into <target>,
# linked with Qt Core and Gui.
function(pvardo_logic_library target)
    cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
    _pvardo_folder_sources(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${target} PUBLIC Qt6::Core Qt6::Gui ${ARG_DEPENDS})
    set_property(GLOBAL APPEND PROPERTY PVARDO_LOGIC_LIBRARIES ${target})
endfunction()

# pvardo_screens_library(<target> [DEPENDS <targets>...])
# Builds every .cpp of the calling folder into <target>, linked with Qt Widgets.
function(pvardo_screens_library target)
    cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
    _pvardo_folder_sources(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${target} PUBLIC Qt6::Core Qt6::Gui Qt6::Widgets ${ARG_DEPENDS})
    set_property(GLOBAL APPEND PROPERTY PVARDO_SCREENS_LIBRARIES ${target})
endfunction()

# Collects the link closure of a target.
function(_pvardo_link_closure target out)
    set(seen "")
    set(queue ${target})
    while(queue)
        list(POP_FRONT queue current)
        if(current IN_LIST seen)
            continue()
        endif()
        list(APPEND seen ${current})
        if(TARGET ${current})
            get_target_property(aliased ${current} ALIASED_TARGET)
            if(aliased)
                list(APPEND queue ${aliased})
            endif()
            get_target_property(links ${current} INTERFACE_LINK_LIBRARIES)
            if(links)
                list(APPEND queue ${links})
            endif()
            get_target_property(type ${current} TYPE)
            if(NOT type STREQUAL "INTERFACE_LIBRARY")
                get_target_property(plinks ${current} LINK_LIBRARIES)
                if(plinks)
                    list(APPEND queue ${plinks})
                endif()
            endif()
        endif()
    endwhile()
    set(${out} ${seen} PARENT_SCOPE)
endfunction()

# Fails the configuration when a logic library reaches Qt Widgets: the admin
# tool and the logic tests must run without a display. Nor may any library
# outside the application's own folder reach the application layer
# (pvardo_app), which sits on top of the others.
function(pvardo_check_logic_libraries)
    get_property(libs GLOBAL PROPERTY PVARDO_LOGIC_LIBRARIES)
    foreach(lib IN LISTS libs)
        _pvardo_link_closure(${lib} closure)
        foreach(dep IN LISTS closure)
            if(dep MATCHES "Widgets|PrintSupport" )
                message(FATAL_ERROR "Logic library ${lib} links ${dep}; move the widget code into screens/.")
            endif()
        endforeach()
    endforeach()
    get_property(screens GLOBAL PROPERTY PVARDO_SCREENS_LIBRARIES)
    foreach(lib IN LISTS libs screens)
        if(lib MATCHES "^pvardo_app")
            continue()
        endif()
        _pvardo_link_closure(${lib} closure)
        if("pvardo_app" IN_LIST closure)
            message(FATAL_ERROR "Library ${lib} links pvardo_app; move what it needs below the application layer.")
        endif()
    endforeach()
endfunction()
