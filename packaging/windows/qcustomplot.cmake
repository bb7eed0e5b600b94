# QCustomPlot for Windows, as the package that Linux has: its own source package builds with qmake.
cmake_minimum_required(VERSION 3.22)
project(QCustomPlot LANGUAGES CXX)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_AUTOMOC ON)
find_package(Qt6 REQUIRED COMPONENTS PrintSupport Widgets)

add_library(QCustomPlotQt6 STATIC ${PLOT_SOURCES}/qcustomplot.cpp ${PLOT_SOURCES}/qcustomplot.h)
target_link_libraries(QCustomPlotQt6 PUBLIC Qt6::PrintSupport Qt6::Widgets)
target_compile_options(QCustomPlotQt6 PRIVATE -Wa,-mbig-obj)
target_include_directories(QCustomPlotQt6 INTERFACE $<INSTALL_INTERFACE:include>)
install(TARGETS QCustomPlotQt6 EXPORT QCustomPlotQt6Targets)
install(FILES ${PLOT_SOURCES}/qcustomplot.h DESTINATION include)
install(EXPORT QCustomPlotQt6Targets NAMESPACE QCustomPlotQt6:: FILE QCustomPlotQt6Config.cmake
  DESTINATION lib/cmake/QCustomPlotQt6)
