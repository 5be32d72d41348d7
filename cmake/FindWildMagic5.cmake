# Finds Debian's Wild Magic 5 (libwildmagic-dev), which ships neither a CMake config nor a
# pkg-config file.
#
# Defines the IMPORTED targets WildMagic5::Core, WildMagic5::Mathematics and
# WildMagic5::Graphics (Graphics depends on the other two). Their include directory is marked
# SYSTEM by being an imported target's, so Wild Magic's headers never trip our warnings.

find_path(WildMagic5_INCLUDE_DIR Wm5Vector3.h PATH_SUFFIXES libwildmagic wildmagic)
find_library(WildMagic5_Core_LIBRARY NAMES Wm5Core)
find_library(WildMagic5_Mathematics_LIBRARY NAMES Wm5Mathematics)
find_library(WildMagic5_Graphics_LIBRARY NAMES Wm5Graphics)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(WildMagic5
    REQUIRED_VARS WildMagic5_INCLUDE_DIR WildMagic5_Core_LIBRARY WildMagic5_Mathematics_LIBRARY)

if(WildMagic5_FOUND)
    if(NOT TARGET WildMagic5::Core)
        add_library(WildMagic5::Core UNKNOWN IMPORTED)
        set_target_properties(WildMagic5::Core PROPERTIES
            IMPORTED_LOCATION "${WildMagic5_Core_LIBRARY}"
            INTERFACE_INCLUDE_DIRECTORIES "${WildMagic5_INCLUDE_DIR}")
    endif()
    if(NOT TARGET WildMagic5::Mathematics)
        add_library(WildMagic5::Mathematics UNKNOWN IMPORTED)
        set_target_properties(WildMagic5::Mathematics PROPERTIES
            IMPORTED_LOCATION "${WildMagic5_Mathematics_LIBRARY}"
            INTERFACE_INCLUDE_DIRECTORIES "${WildMagic5_INCLUDE_DIR}"
            INTERFACE_LINK_LIBRARIES WildMagic5::Core)
    endif()
    if(WildMagic5_Graphics_LIBRARY AND NOT TARGET WildMagic5::Graphics)
        add_library(WildMagic5::Graphics UNKNOWN IMPORTED)
        set_target_properties(WildMagic5::Graphics PROPERTIES
            IMPORTED_LOCATION "${WildMagic5_Graphics_LIBRARY}"
            INTERFACE_INCLUDE_DIRECTORIES "${WildMagic5_INCLUDE_DIR}"
            INTERFACE_LINK_LIBRARIES WildMagic5::Mathematics)
    endif()
endif()

mark_as_advanced(WildMagic5_INCLUDE_DIR WildMagic5_Core_LIBRARY WildMagic5_Mathematics_LIBRARY
    WildMagic5_Graphics_LIBRARY)
