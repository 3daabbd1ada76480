// The material library: material files, technology files, conversion material and rule files.
