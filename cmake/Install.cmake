# Filled with the installation rules.
