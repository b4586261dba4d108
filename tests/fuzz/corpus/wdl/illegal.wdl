a = xyz 5;
b = < b >;
