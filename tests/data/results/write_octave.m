% Writes the files that GNU Octave writes: with `octave-cli write_octave.m DIRECTORY`.
directory = argv(){1};
v = [1.5 -2; 3 4.25; 5 6];
i = [1 2 3; 4 5 6; 7 8 -9];
save("-v6", [directory "/octave-doubles.mat"], "v");
save("-v6", [directory "/octave-integers-as-doubles.mat"], "i");
i = int16(i);
save("-v6", [directory "/octave-int16.mat"], "i");
save("-v7", [directory "/octave-compressed.mat"], "v");
