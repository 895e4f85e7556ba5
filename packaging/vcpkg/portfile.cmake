# A port over this source tree: `vcpkg install quorvane --overlay-ports=packaging/vcpkg`. A registry would fetch a
# release with vcpkg_from_github in place of the first line.
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)

vcpkg_check_features(OUT_FEATURE_OPTIONS FEATURE_OPTIONS FEATURES tools QUORVANE_BUILD_TOOLS)
vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS ${FEATURE_OPTIONS} -DQUORVANE_BUILD_TESTS=OFF -DQUORVANE_BUILD_BENCH=OFF
    -DQUORVANE_BUILD_PYTHON=OFF -DQUORVANE_BUILD_GSTREAMER=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME Quorvane CONFIG_PATH lib/cmake/Quorvane)
vcpkg_fixup_pkgconfig()
vcpkg_copy_pdbs()
if("tools" IN_LIST FEATURES)
  vcpkg_copy_tools(TOOL_NAMES qvn AUTO_CLEAN)
endif()

# The build makes both libraries; quorvane::quorvane is the shared one, quorvane::static the other.
set(VCPKG_POLICY_ALLOW_DEBUG_SHARE enabled)
set(VCPKG_POLICY_DLLS_IN_STATIC_LIBRARY enabled)
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
