# SPDX-License-Identifier: MIT
# Library headers that most sources of a target include are compiled once for the target. Sources include all that they
# use nevertheless: the preset "release" builds without this and tells what is missing.

option(CORVANTA_PRECOMPILE_HEADERS "Compile the most used library headers once for each target" OFF)

set(CORVANTA_PRECOMPILED_qt
  <QJsonObject> <QString> <QStringList> <algorithm> <chrono> <functional> <map> <memory> <optional>
  <string> <variant> <vector>)
set(CORVANTA_PRECOMPILED_core ${CORVANTA_PRECOMPILED_qt} <QCoroTask>)
set(CORVANTA_PRECOMPILED_widgets <QBoxLayout> <QLabel> <QPushButton> <QWidget>)
set(CORVANTA_PRECOMPILED_dbus <QDBusConnection> <QDBusMessage>)
set(CORVANTA_PRECOMPILED_tests <gmock/gmock.h> <gtest/gtest.h>)
set(CORVANTA_PRECOMPILED_webkit <gtk/gtk.h> <webkit2/webkit2.h> <functional> <memory> <optional> <string> <vector>)

# corvanta_precompile(TARGET SET...): the sets of headers named above.
function(corvanta_precompile target)
  if(NOT CORVANTA_PRECOMPILE_HEADERS)
    return()
  endif()
  set(headers)
  foreach(set IN LISTS ARGN)
    list(APPEND headers ${CORVANTA_PRECOMPILED_${set}})
  endforeach()
  target_precompile_headers(${target} PRIVATE ${headers})
  # The compiler cache takes the text of the headers for their age.
  target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
endfunction()
