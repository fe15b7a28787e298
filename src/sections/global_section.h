#pragma once
void printGlobalSectionOffsets();
void dumpGlobalSection();
