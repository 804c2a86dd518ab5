#include "app/Application.h"

int main(int argc, char** argv) { return zelnor::app::run(argc, argv); }
