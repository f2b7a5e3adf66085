# SPDX-License-Identifier: MIT
# The Debian packages that the project needs, in lists for each purpose. Sourced by script/setup.
# docs/dependencies.md says why each library is there.

packages_build="g++ cmake ninja-build ccache pkg-config git ca-certificates
  qt6-base-dev qt6-svg-dev libhwy-dev libexpat1-dev libicu-dev libuchardet-dev libcld2-dev libseccomp-dev libsystemd-dev
  libcurl4-openssl-dev nettle-dev libidn2-dev
  libavformat-dev libavcodec-dev libavutil-dev libswscale-dev libswresample-dev libavdevice-dev"
packages_run="fonts-dejavu-core qt6-wayland"
packages_test="libgtest-dev clang-format-19 python3-minimal
  xvfb xdotool xclip x11-apps dbus dbus-x11 at-spi2-core libatspi2.0-dev ffmpeg
  desktop-file-utils appstream shared-mime-info libglib2.0-bin groff-base
  bubblewrap ranger nnn tmux file nginx-light curl openssl weston"
packages_package="build-essential debhelper lintian"
packages_bench="libbenchmark-dev libxcb1-dev xvfb ffmpeg qt6-declarative-dev qml6-module-qtquick nginx-light curl nautilus-data evince-common gedit-common"
