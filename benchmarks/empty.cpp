// The least that a program in C++ costs: what start-up is measured by.
#include <iostream>

int main() {}
