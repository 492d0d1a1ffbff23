// The shared library is made of the parts' archives; a linker wants one object of its own.
