"""Conan 2 recipe over this source tree: `conan create packaging/conan`."""

import os

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class QuorvaneConan(ConanFile):
    name = "quorvane"
    version = "2.1.2.0"
    license = "MIT"
    description = "Exact and fast pixel-format conversions for frames from industrial cameras"
    settings = "os", "compiler", "build_type", "arch"
    options = {"tools": [True, False]}
    default_options = {"tools": False}

    def export_sources(self):
        root = os.path.join(self.recipe_folder, "..", "..")
        for part in ("CMakeLists.txt", "LICENSE", "CHANGELOG.md", "bindings/*", "cmake/*", "include/*",
                     "packaging/*", "src/*", "tools/*"):
            copy(self, part, root, self.export_sources_folder)

    def requirements(self):
        if self.options.tools:
            self.requires("cli11/[>=2.1]")
            self.requires("libpng/[>=1.6]")
            self.requires("libtiff/[>=4.5]")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["QUORVANE_BUILD_TOOLS"] = bool(self.options.tools)
        toolchain.cache_variables["QUORVANE_BUILD_TESTS"] = False
        toolchain.cache_variables["QUORVANE_BUILD_BENCH"] = False
        toolchain.cache_variables["QUORVANE_BUILD_PYTHON"] = False
        toolchain.cache_variables["QUORVANE_BUILD_GSTREAMER"] = False
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))
        CMake(self).install()

    def package_info(self):
        self.cpp_info.set_property("cmake_find_mode", "none")  # the package brings QuorvaneConfig.cmake
        self.cpp_info.builddirs = [os.path.join("lib", "cmake", "Quorvane")]
        self.cpp_info.libs = ["quorvane"]
