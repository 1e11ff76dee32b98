// placeholder until the first tag sources land
