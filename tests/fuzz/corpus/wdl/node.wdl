CLK { A In Default NRZ 0 1 50 } = 1 10 0 10;
