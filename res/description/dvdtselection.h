// The parts of a plant choice, as parameters of their own.
#ifndef DVDTSELECTION_H__
#define DVDTSELECTION_H__

enum { VDTSELECTION_FILE = 1001, VDTSELECTION_VARIANT = 1002, VDTSELECTION_QUALIFIER = 1003 };

#endif
