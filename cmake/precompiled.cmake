# Headers that nearly every file reads, read once: halves the time of a first build. Off where each file has to show
# that it includes what it uses.
option(ZRK_PRECOMPILE "Precompile the headers of Qt and of the standard library" OFF)

set(zrk_common_headers
    <algorithm> <array> <chrono> <cmath> <cstdint> <cstdio> <functional> <limits> <memory> <mutex> <optional> <span>
    <string> <utility> <vector>)
set(zrk_core_headers ${zrk_common_headers}
    <QByteArray> <QFile> <QHash> <QList> <QProperty> <QString> <QStringList>)
set(zrk_window_headers ${zrk_core_headers}
    <QAction> <QApplication> <QBoxLayout> <QCheckBox> <QComboBox> <QEvent> <QGridLayout> <QGroupBox> <QKeyEvent>
    <QLabel> <QLineEdit> <QMainWindow> <QMessageBox> <QPainter> <QPlainTextEdit> <QPointer> <QProgressBar>
    <QPushButton> <QStyle> <QToolButton> <QTreeWidget> <QWidget>)

if(ZRK_PRECOMPILE)
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/empty.cpp CONTENT "")
    add_library(zrk_precompiled STATIC ${PROJECT_BINARY_DIR}/empty.cpp)
    target_link_libraries(zrk_precompiled PRIVATE Qt6::Core zrk_options)
    target_precompile_headers(zrk_precompiled PRIVATE ${zrk_core_headers})
endif()

# zrk_precompile(TARGET plain|core|window): that set of headers for a target; the plain one knows no Qt.
function(zrk_precompile target set)
    if(NOT ZRK_PRECOMPILE)
        return()
    elseif(set STREQUAL "plain")
        target_precompile_headers(${target} PRIVATE ${zrk_common_headers} <iostream>)
    elseif(set STREQUAL "core")
        target_precompile_headers(${target} REUSE_FROM zrk_precompiled)
    else()
        target_precompile_headers(${target} PRIVATE ${zrk_window_headers})
    endif()
endfunction()
