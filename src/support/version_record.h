// The program's version record, in one place. Macros and comments only: resource scripts include this file too.
#pragma once

#define CARVELLO_COMPANY_NAME "Halvarn"
#define CARVELLO_FILE_DESCRIPTION "Cuts narrow-band IQ recordings out of wide-band ones"
#define CARVELLO_FILE_VERSION "1.0.0.0"
#define CARVELLO_FILE_VERSION_NUMBERS 1, 0, 0, 0
#define CARVELLO_INTERNAL_NAME "carvello"
#define CARVELLO_LEGAL_COPYRIGHT "Copyright (C) 2026 the Carvello developers"
#define CARVELLO_ORIGINAL_FILENAME "carvello"
#define CARVELLO_PRODUCT_NAME "Carvello"
#define CARVELLO_PRODUCT_VERSION "1.0"
